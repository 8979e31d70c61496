#include "default/families/default_sdk_NB_parser.h"

#include "contracts/host/log.h"

#include <array>

SKARN_LOG_SOURCE("default/default_sdk_NB_parser");

namespace tarvo::skarnvisor {

namespace {

namespace fields = tarvo::lidar::fields;

constexpr std::array columnRows{
    integerColumn<fields::turnIndex>("TurnIndex", "TurnIndex"),
    integerColumn<fields::pointId>("PointId", "PointId"),
};

}  // namespace

QString DefaultNBFrameRenderBuffer::toolBoxSource() const { return QStringLiteral("NBToolBox.qml"); }

void DefaultNBFrameRenderBuffer::addColumnAttribute(std::string name, int position) {
  if (const PointColumn *const column = findColumn(columnRows, name))
    addColumn(*column, position);
  else
    SKARN_LOG(LogLevel::Error, "add column error : %s", name.c_str());
}

DefaultNBParser::DefaultNBParser(QObject *parent) : DefaultSDKParser(parent, nullptr) {
  takeOver(new DefaultNBFrameRenderBuffer(this));
}

DefaultNBParser::DefaultNBParser() : DefaultNBParser(nullptr) {}

}  // namespace tarvo::skarnvisor
