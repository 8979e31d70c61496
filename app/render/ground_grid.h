#pragma once

#include <QString>
#include <QVector3D>
#include <vector>

#include "app/render/camera.h"

namespace tarvo::skarnvisor::app {

/// Range rings on the ground around the sensor, two axes through it, and where each ring's label stands.
struct GroundGrid {
  struct Segment {
    QVector3D from;
    QVector3D to;
  };
  struct Label {
    QVector3D at;
    QString text;
  };
  std::vector<Segment> segments;
  std::vector<Label> labels;
};

/// Three to eight rings at round distances, metres, up to a little beyond the scene's reach.
GroundGrid groundGrid(const SceneExtent &scene);

}  // namespace tarvo::skarnvisor::app
