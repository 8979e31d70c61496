#pragma once

#include <QSize>
#include <QString>

#include "app/cli/calibration_command.h"
#include "app/cli/capture_options.h"
#include "app/cli/export_command.h"
#include "app/cli/point_options.h"
#include "app/render/camera.h"
#include "app/render/color_ramp.h"

namespace tarvo::skarnvisor::app {

enum class Command { View, Info, Render, Play, Cut, Record, Convert, Telemetry, Types, Calibration, Export };

/// How a picture is to look.
struct LookOptions {
  QString color = QStringLiteral("intensity");
  ColorRamp ramp;
  QString view = OrbitCamera::viewNames().first();
  QSize size{1280, 720};
  double pointPixels = 2;
  bool splitHalf = false;
  bool grid = true;
};

/// What the command line asks for.
struct Options {
  Command command = Command::View;
  QString file;
  QString plugin;  ///< empty: the one beside the program
  bool verbose = false;
  LookOptions look;
  CaptureOptions capture;
  PointOptions points;
  // view
  QString shotFile;
  // render, telemetry
  int frame = 0;
  QString out;
  // render, play
  int stack = 1;  ///< frames shown at once
  // play
  bool byTime = false;
  double speed = 0;    ///< 0: as fast as frames come
  int frameLimit = 0;  ///< 0: the whole capture
  QString pictureFolder;
  int pictureCount = 5;
  QString summaryFile;
  // telemetry
  QString csvFile;
  // export
  ExportOptions exports;
  // types
  QString lidarType;  ///< empty: the whole table
  // convert
  QString targetFormat;  ///< "bin", "pcd" or "csv"
  CalibrationOptions calibration;
};

/// What parsing came to: options to work off, or an exit code with everything already printed (help, a wrong argument).
struct ParsedOptions {
  bool proceed = false;
  int exitCode = 0;
  Options options;
};

ParsedOptions parseOptions(int argc, const char *const *argv);

}  // namespace tarvo::skarnvisor::app
