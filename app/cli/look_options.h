#pragma once

#include <QSize>
#include <QString>

#include "app/render/camera.h"
#include "app/render/color_ramp.h"

namespace CLI {
class App;
}

namespace tarvo::skarnvisor::app {

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

/// Adds them to a command that draws pictures.
void addLook(CLI::App &command, LookOptions &look);

}  // namespace tarvo::skarnvisor::app
