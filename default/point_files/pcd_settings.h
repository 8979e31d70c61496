#pragma once

#include <QMatrix4x4>
#include <cstdint>

#include "default/models/settings_value.h"

namespace tarvo::skarnvisor {

inline QMatrix4x4 nothingSelected() {
  QMatrix4x4 matrix;
  matrix.fill(0.0F);
  return matrix;
}

/// The scalar settings of a point-file track. Written by property setters on one thread at a time, read by the
/// pipeline as they stand.
struct PcdSettings {
  Relaxed<bool> selectEnabled{false};
  Relaxed<bool> spreadSheetEnabled{false};
  Relaxed<bool> playByFrame{true};
  Relaxed<bool> statusEnabled{false};
  Relaxed<bool> monitorViewEnabled{false};
  Relaxed<bool> channelMapping{true};
  Relaxed<bool> usePixelChannelLayout{true};
  Relaxed<bool> disableSubpixelChannel{false};
  Relaxed<bool> filterSubpixelChannel{false};
  Relaxed<bool> groundFilterSwitch{false};
  Relaxed<int> digitPrecision{3};  ///< decimals of the point table
  Relaxed<int> detailExportType{0};
  Snapshot<QMatrix4x4> selectionMatrix{nothingSelected()};
};

/// The parameters of the ground filter, in the order in which they are set.
struct GroundFilterSettings {
  int firstChannel = 29;
  int lastChannel = 35;
  float limitA = 40.0F;
  float limitB = 100.0F;
  float limitC = 0.0F;
  float limitD = 0.3F;
  std::uint8_t byteA = 0;
  std::uint8_t byteB = 5;
  float ratio = 0.5F;
  std::uint8_t byteC = 2;
  std::uint8_t byteD = 0;
  std::uint8_t byteE = 30;
  float low = -100.0F;
  float high = 100.0F;
  float firstAngle = 35.0F;
  float lastAngle = 145.0F;
};

}  // namespace tarvo::skarnvisor
