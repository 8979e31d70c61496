#include "app/window/window.h"

#include <QApplication>
#include <QTimer>
#include <cstdio>
#include <memory>

#include "app/window/main_window.h"
#include "app/window/window_shot.h"

namespace tarvo::skarnvisor::app {

int runWindow(const WindowOptions &options) {
  MainWindow main;
  if (main.window() == nullptr) {
    std::fputs("skarnvisor: the window could not be made\n", stderr);
    return 1;
  }
  Viewer &viewer = main.viewer();
  std::unique_ptr<WindowShot> shot;
  if (!options.shotFile.isEmpty()) shot = std::make_unique<WindowShot>(main, options.shotFile);
  QTimer::singleShot(0, &viewer, [&viewer, &options] {
    viewer.start(options.pluginPath);
    if (!options.capture.isEmpty() && viewer.error().isEmpty()) viewer.open(options.capture);
  });
  return QApplication::exec();
}

}  // namespace tarvo::skarnvisor::app
