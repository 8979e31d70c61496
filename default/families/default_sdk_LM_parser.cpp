#include "default/families/default_sdk_LM_parser.h"

#include "contracts/host/log.h"

#include <array>

SKARN_LOG_SOURCE("default/default_sdk_LM_parser");

namespace tarvo::skarnvisor {

namespace {

namespace fields = tarvo::lidar::fields;

constexpr std::array columnRows{
    PointColumn{"confidence4567", "Confidence4567", valueOf<fields::confidence4567>, CellFormat::Integer, {}},
};

}  // namespace

void DefaultLMFrameRenderBuffer::updateMonitor(const unsigned char *block) {
  showMonitor(block, familyMonitorBoards(lidarType()));
}

QString DefaultLMFrameRenderBuffer::toolBoxSource() const { return QStringLiteral("LMToolBox.qml"); }

QString DefaultLMFrameRenderBuffer::modeEditorSource() const { return QStringLiteral("FrameModeEditor.qml"); }

void DefaultLMFrameRenderBuffer::addColumnAttribute(std::string name, int position) {
  if (const PointColumn *const column = findColumn(columnRows, name))
    addColumn(*column, position);
  else
    SKARN_LOG(LogLevel::Error, "add column error : %s", name.c_str());
}

DefaultLMParser::DefaultLMParser(QObject *parent) : DefaultSDKParser(parent, nullptr) {
  takeOver(new DefaultLMFrameRenderBuffer(this));
}

DefaultLMParser::DefaultLMParser() : DefaultLMParser(nullptr) {}

}  // namespace tarvo::skarnvisor
