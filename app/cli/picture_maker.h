#pragma once

#include <QString>
#include <optional>

#include "app/cli/look_options.h"
#include "app/render/cloud_picture.h"

namespace tarvo::skarnvisor::app {

class CaptureSession;

/// Draws the frames of a session into files. The eye and the value range are set by the first frame and kept, so that
/// the pictures of one capture can be compared.
class PictureMaker {
 public:
  PictureMaker(CaptureSession &session, LookOptions look);

  /// Selects the colour mode and waits for it; an empty string, or one sentence.
  QString selectColor();
  /// Draws what is on the canvas; an empty string, or one sentence.
  QString write(const QString &file);

 private:
  struct Stand {
    OrbitCamera camera;
    SceneExtent scene;
    ValueRange range;
  };

  CaptureSession &m_session;
  LookOptions m_look;
  std::optional<Stand> m_stand;
};

}  // namespace tarvo::skarnvisor::app
