#pragma once

#include "app/cli/look_options.h"
#include "app/cli/point_options.h"
#include "app/cli/source_command.h"

namespace tarvo::skarnvisor::app {

/// What "play" is asked for.
struct PlayOptions : SourceOptions {
  double seconds = 0;  ///< of a live source; 0: until interrupted
  bool soak = false;   ///< change settings all the time and report every ten seconds
  bool byTime = false;
  int stack = 1;       ///< frames shown at once
  double speed = 0;    ///< 0: as fast as frames come
  int frameLimit = 0;  ///< 0: the whole capture
  QString pictureFolder;
  int pictureCount = 5;
  QString summaryFile;
  LookOptions look;
  PointOptions points;
};

/// "play" of a live source. An empty string, or one sentence saying why it failed.
QString runLivePlay(CaptureSession &session, const PlayOptions &options);

}  // namespace tarvo::skarnvisor::app
