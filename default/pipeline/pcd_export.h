#pragma once

#include "default/files/output_file.h"
#include "default/frame/mark_test.h"
#include "default/models/point_columns.h"
#include "default/pipeline/canvas_ring.h"
#include "default/pipeline/frame_picture.h"

#include <QList>
#include <QString>

namespace tarvo::skarnvisor {

/// What of a picture a PCD file is to hold.
struct PcdContent {
  QList<PcdFieldRecord> fields;  ///< those that are enabled are written, in their order
  MarkTest marks;
  bool selectedOnly = false;
};

/// How the writer holds the picture, which parser and GUI wait for meanwhile.
struct PictureHold {
  std::size_t points = 131'072;  ///< at most so many points are turned to text in one go
  bool throughout = false;       ///< from first to last, also while the disk takes the bytes
};

/// Writes the visible points of the picture, or of all canvases of the ring, as an ASCII PCD file. Any thread, without
/// `frameMutex`. Unless the picture is held throughout, the points of two frames may mix; when their number changed
/// meanwhile, nothing is written.
WriteOutcome writePcd(const FramePicture &picture, const CanvasRing &ring, const PcdContent &content,
                      const QString &path, const PictureHold &hold, WriteProgress &progress);

}  // namespace tarvo::skarnvisor
