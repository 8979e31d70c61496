#pragma once

#include <QString>
#include <QStringList>

namespace CLI {
class App;
}

namespace tarvo::skarnvisor::app {

class CaptureSession;
struct Options;

/// What "export" asks beside the capture and its frames.
struct ExportOptions {
  QString format;         ///< "pcd" or "csv"
  QStringList fields;     ///< empty: those that are on by default, or every column
  QString selectionFile;  ///< empty: all visible points
};

void addExportCommand(CLI::App &program, Options &options);

/// "export": one file a frame with its points. Returns an empty string, or one sentence saying why it failed.
QString runExport(CaptureSession &session, const Options &options);

}  // namespace tarvo::skarnvisor::app
