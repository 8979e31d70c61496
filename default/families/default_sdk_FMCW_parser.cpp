#include "default/families/default_sdk_FMCW_parser.h"

#include "contracts/host/log.h"

#include <array>

SKARN_LOG_SOURCE("default/default_sdk_FMCW_parser");

namespace tarvo::skarnvisor {

namespace {

namespace fields = tarvo::lidar::fields;

constexpr std::array columnRows{
    PointColumn{"RelVelocity", "RelVelocity", valueOf<fields::relVelocity>, CellFormat::Decimals,
                PcdField{"relVelocity", 4, 'F', false, PcdFormat::Float}},
    PointColumn{"AngleId", "AngleId", valueOf<fields::angleId>, CellFormat::Integer, {}},
};

}  // namespace

QString DefaultFMCWFrameRenderBuffer::toolBoxSource() const { return QStringLiteral("FMCWToolBox.qml"); }

void DefaultFMCWFrameRenderBuffer::addColumnAttribute(std::string name, int position) {
  if (const PointColumn *const column = findColumn(columnRows, name))
    addColumn(*column, position);
  else
    SKARN_LOG(LogLevel::Error, "add column error : %s", name.c_str());
}

DefaultFMCWParser::DefaultFMCWParser(QObject *parent) : DefaultSDKParser(parent, nullptr) {
  takeOver(new DefaultFMCWFrameRenderBuffer(this));
}

DefaultFMCWParser::DefaultFMCWParser() : DefaultFMCWParser(nullptr) {}

}  // namespace tarvo::skarnvisor
