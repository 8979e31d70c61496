#include "default/families/default_sdk_QS_parser.h"

#include "contracts/host/log.h"

#include <array>

SKARN_LOG_SOURCE("default/default_sdk_QS_parser");

namespace tarvo::skarnvisor {

namespace {

namespace fields = tarvo::lidar::fields;

constexpr PointColumn pcdNamed(PointColumn column, std::string_view name) {
  column.name = name;
  column.pcd->name = name;
  return column;
}

constexpr std::array columnRows{
    pcdNamed(integerColumn<fields::column>("Col", "Col"), "col"),
    pcdNamed(integerColumn<fields::channel>("Row", "Row"), "row"),
    integerColumn<fields::background>("Background", "Background"),
    integerColumn<fields::qswConfidence>("QswConfidence", "QswConfidence"),
};

}  // namespace

QString DefaultQSFrameRenderBuffer::toolBoxSource() const { return QStringLiteral("QSToolBox.qml"); }

void DefaultQSFrameRenderBuffer::addColumnAttribute(std::string name, int position) {
  if (const PointColumn *const column = findColumn(columnRows, name))
    addColumn(*column, position);
  else
    SKARN_LOG(LogLevel::Error, "add column error : %s", name.c_str());
}

DefaultQSParser::DefaultQSParser(QObject *parent) : DefaultSDKParser(parent, nullptr) {
  takeOver(new DefaultQSFrameRenderBuffer(this));
}

DefaultQSParser::DefaultQSParser() : DefaultQSParser(nullptr) {}

}  // namespace tarvo::skarnvisor
