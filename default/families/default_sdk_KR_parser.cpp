#include "default/families/default_sdk_KR_parser.h"

#include "contracts/host/log.h"
#include "contracts/runtime/frame_decode_param.h"
#include "contracts/runtime/parallel_isp_engine.h"
#include "contracts/runtime/sdk_source.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

SKARN_LOG_SOURCE("default/default_sdk_KR_parser");

namespace tarvo::skarnvisor {

namespace {

namespace fields = tarvo::lidar::fields;

constexpr PointColumn withSize(PointColumn column, int size) {
  column.pcd->size = size;
  return column;
}

constexpr PointColumn metres(std::string_view name, PointColumn::Value value) {
  return {name, name, value, CellFormat::FiveDecimals, PcdField{name, 4, 'F', false, PcdFormat::FiveDecimals}};
}

/// Attributes that lie at the same place in both point layouts.
constexpr std::array commonRows{
    integerColumn<fields::field>("Field", "Field"),
    integerColumn<fields::glareInD>("GlareInD", "GlareInD"),
    integerColumn<fields::confidence>("confidence", "confidence"),
    withSize(integerColumn<fields::red>("R", "R"), 1),
    withSize(integerColumn<fields::green>("G", "G"), 1),
    withSize(integerColumn<fields::blue>("B", "B"), 1),
};

constexpr std::array plainRows{
    integerColumn<fields::rawIntensity>("RawIntensity", "RawIntensity"),
    integerColumn<fields::area>("Area", "Area"),
    integerColumn<fields::peak>("Peak", "Peak"),
    integerColumn<fields::frontCenterDistDiff>("FrontCenterDistDiff", "FrontCenterDistDiff"),
    integerColumn<fields::frontDistDiff>("FrontDistDiff", "FrontDistDiff"),
};

constexpr std::array alternateRows{
    integerColumn<fields::rawIntensityAlternate>("RawIntensity", "RawIntensity"),
    integerColumn<fields::areaAlternate>("Area", "Area"),
    integerColumn<fields::peakAlternate>("Peak", "Peak"),
    metres("FrontCenterDistDiff", valueOf<fields::frontCenterDistDiffAlternate>),
    metres("FrontDistDiff", valueOf<fields::frontDistDiffAlternate>),
    withSize(integerColumn<fields::stepId>("StepId", "StepId"), 1),
    integerColumn<fields::spadId>("SpadId", "SpadId"),
};

/// The area before the remap, for lidars that offer it.
constexpr PointColumn plainRawArea = integerColumn<fields::rawArea>("Area", "Area");
constexpr PointColumn alternateRawArea = integerColumn<fields::rawAreaAlternate>("Area", "Area");

}  // namespace

void DefaultKRFrameRenderBuffer::setLidarType(std::string lidarType) {
  DefaultSDKFrameRenderBuffer::setLidarType(std::move(lidarType));
  const TypeTraits type = traits();
  setNbqPointLayout(type.nbqPointLayout);
  setDiffByThree(type.diffByThree);
  writeParams([&type](tarvo::lidar::FrameDecodeParam &params) { params.nbqPointLayout = type.nbqPointLayout; });
}

void DefaultKRFrameRenderBuffer::updateMonitor(const unsigned char *block) {
  showMonitor(block, familyMonitorBoards(lidarType()));
}

QString DefaultKRFrameRenderBuffer::toolBoxSource() const { return QStringLiteral("KRToolBox.qml"); }

QString DefaultKRFrameRenderBuffer::modeEditorSource() const {
  return frameModelUseful() ? QStringLiteral("FrameModeEditor.qml") : QString();
}

void DefaultKRFrameRenderBuffer::addColumnAttribute(std::string name, int position) {
  const bool alternate = colors().table.take()->attributes.nbqPointLayout;
  if (name == "Area" && areaRemapFlag()) {
    addColumn(alternate ? alternateRawArea : plainRawArea, position);
    return;
  }
  const PointColumn *column = findColumn(commonRows, name);
  if (column == nullptr) column = alternate ? findColumn(alternateRows, name) : findColumn(plainRows, name);
  if (column != nullptr)
    addColumn(*column, position);
  else if (name == "StepId")
    SKARN_LOG(LogLevel::Error, "add column error : StepId only for NBQ TU");
  else if (name == "SpadId")
    SKARN_LOG(LogLevel::Error, "add column error : SpadId only for NBQ TU / COLOR_FLD");
  else
    SKARN_LOG(LogLevel::Error, "add column error : %s", name.c_str());
}

/// A picture of the image-signal queue is made anew from its raw frame; others are parsed again.
void DefaultKRFrameRenderBuffer::redrawCalibrated() {
  constexpr int pullLimitMs = 8000;
  picture().dropFastVertex();
  tarvo::lidar::SDKSource *const from = source();
  auto *const engine = from != nullptr ? from->ispEngine : nullptr;
  if (engine != nullptr && engine->Enabled()) {
    const std::int64_t shown = std::max<std::int64_t>(engine->LastDisplayedSeq(), 0);
    engine->ClearAll(shown);
    engine->RequestForcePull();
    if (engine->DisplayPullTargetAndFill(from, shown, pullLimitMs)) repeatParse();
  } else {
    repeatParse();
  }
  announce(&DefaultKRFrameRenderBuffer::vertexChanged);
  announce(&DefaultKRFrameRenderBuffer::renderStateChanged);
}

DefaultKRParser::DefaultKRParser(QObject *parent) : DefaultSDKParser(parent, nullptr) {
  takeOver(new DefaultKRFrameRenderBuffer(this));
}

DefaultKRParser::DefaultKRParser() : DefaultKRParser(nullptr) {}

}  // namespace tarvo::skarnvisor
