#pragma once

#include <QUrl>

namespace tarvo::skarnvisor {
class RenderBuffer;
class TrackBuffer;
}  // namespace tarvo::skarnvisor

namespace tarvo::skarnvisor::app {

/// Address of a QML file of the program, empty for one that it does not have.
QUrl programFile(const QString &name);

/// The files that an open source names for its place in the window. As made: those of no source.
struct NamedFiles {
  NamedFiles();

  QUrl render;      ///< lies over the points; empty without a source
  QUrl trackBody;   ///< the track on the timeline
  QUrl trackPoint;  ///< the mark of the cursor in the track
};

/// What the two name; a plain file, and a line in the log, for a name that the program has no file for. Either may be
/// null.
NamedFiles namedFiles(const RenderBuffer *buffer, const TrackBuffer *track);

}  // namespace tarvo::skarnvisor::app
