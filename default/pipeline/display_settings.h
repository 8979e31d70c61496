#pragma once

#include "default/models/settings_value.h"

#include <QMatrix4x4>
#include <QString>

#include <array>
#include <cstdint>

namespace tarvo::skarnvisor {

/// Shown or hidden, per dirty level 0 to 255.
using DirtyMask = std::array<bool, 256>;

inline DirtyMask everyDirtyLevelShown() {
  DirtyMask mask;
  mask.fill(true);
  return mask;
}

inline QMatrix4x4 emptySelection() {
  QMatrix4x4 matrix;
  matrix.fill(0.0F);
  return matrix;
}

/// The scalar settings of a render buffer. Written by property setters, read by the producer and the
/// parser as they stand: a change may reach a frame that is under way.
struct DisplaySettings {
  Relaxed<bool> selectEnabled{false};
  Relaxed<bool> spreadSheetEnabled{false};
  Relaxed<bool> remakeEnabled{false};
  Relaxed<bool> playByFrame{true};
  Relaxed<bool> statusEnabled{true};
  Relaxed<bool> monitorViewEnabled{false};
  Relaxed<bool> faultmessageViewEnabled{false};
  Relaxed<bool> intensityMapFlag{true};
  Relaxed<bool> vd8PopoutHighlight{false};
  Relaxed<bool> blindChannelCheck{true};
  Relaxed<int> distanceCorrectionState{-1};
  Relaxed<int> useCuda{-1};
  Relaxed<int> detailDecimals{3};
  Relaxed<int> detailExportType{-1};
  Relaxed<int> glslType{0};
  Relaxed<std::int64_t> frameTicks{1'000'000};  ///< span of one frame, 100 ns
  Snapshot<QMatrix4x4> selectionMatrix{emptySelection()};
  Snapshot<DirtyMask> dirtyMask{everyDirtyLevelShown()};
  Snapshot<QString> detailExportPath;
  Snapshot<QString> title;  ///< source title, written by the parser
};

/// Words between producer, parser and the threads that ask them for a run.
struct PipelineFlow {
  Relaxed<bool> skipParse{false};     ///< producer to parser: nothing new was decoded
  Relaxed<bool> forceReparse{false};  ///< set around a repeat parse, under the parse lock
  std::atomic<bool> frameAllocationBusy{false};
  std::atomic<bool> cacheResetRequested{false};
};

/// Default files of the lidar's type and the names of the files last used, as the panels show them. Filled by the
/// configuration before the first frame, later by imports on the thread that sets and by exports on the parser's
/// thread.
struct CalibrationPaths {
  Snapshot<QString> correctionPath;
  Snapshot<QString> firetimesPath;
  Snapshot<QString> channelEqPath;
  Snapshot<QString> dcfPath;
  Snapshot<QString> nonlinearMappingPath;
  Snapshot<QString> correctionFileDir;  ///< a bare file name, as all below
  Snapshot<QString> firetimesFileDir;
  Snapshot<QString> channelEqFileDir;
  Snapshot<QString> channelConfigFileDir;
  Snapshot<QString> DcfFileDir;
  Snapshot<QString> nonlinearMappingFileDir;
};

/// Rigid transform that the canvas applies; vertices keep sensor coordinates.
struct CoordinateTransform {
  Relaxed<bool> enabled{false};
  Relaxed<float> x{0.0F};
  Relaxed<float> y{0.0F};
  Relaxed<float> z{0.0F};
  Relaxed<float> rollRad{0.0F};
  Relaxed<float> pitchRad{0.0F};
  Relaxed<float> yawRad{0.0F};
};

}  // namespace tarvo::skarnvisor
