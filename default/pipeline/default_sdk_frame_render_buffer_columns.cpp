// Optional point attributes: columns of the point table and fields of the PCD export.
#include "default/pipeline/default_sdk_frame_render_buffer.h"

#include "contracts/host/log.h"
#include "default/pipeline/stored_points.h"

#include <algorithm>

SKARN_LOG_SOURCE("default/default_sdk_parser");

namespace tarvo::skarnvisor {

void DefaultSDKFrameRenderBuffer::addColumn(const PointColumn &column, int position) {
  if (!column.title.empty())
    m_spreadSheetModel->insertColumn(makeColumn(column, m_picture, m_settings.detailDecimals), position);
  if (column.pcd) m_pcdFields.update([&](auto &fields) { fields.append(makePcdField(column)); });
}

void DefaultSDKFrameRenderBuffer::addColumnAttribute(std::string name, int position) {
  if (const PointColumn *const column = findColumn(optionalColumns(), name))
    addColumn(*column, position);
  else
    SKARN_LOG(LogLevel::Error, "add column error : %s", name.c_str());
}

void DefaultSDKFrameRenderBuffer::removeColumnAttribute(std::string name) {
  if (name != "Ch") return;
  const QString title = QString::fromStdString(name);
  m_spreadSheetModel->removeColumn(title);
  m_pcdFields.update([&](auto &fields) {
    const auto field =
        std::find_if(fields.begin(), fields.end(), [&](const PcdFieldRecord &record) { return record.name == title; });
    if (field != fields.end()) fields.erase(field);
  });
}

bool DefaultSDKFrameRenderBuffer::getPcdFieldEnabled(int index) const {
  const auto fields = m_pcdFields.take();
  return index >= 0 && index < fields->size() && fields->at(index).enabled;
}

void DefaultSDKFrameRenderBuffer::setPcdFieldEnabled(int index, bool enabled) {
  m_pcdFields.update([=](auto &fields) {
    if (index >= 0 && index < fields.size()) fields[index].enabled = enabled;
  });
}

QStringList DefaultSDKFrameRenderBuffer::getPcdFieldListString() const {
  QStringList names;
  const auto fields = m_pcdFields.take();
  for (const PcdFieldRecord &field : *fields) names.append(field.name);
  return names;
}

void DefaultSDKFrameRenderBuffer::detailDataUpdata() {
  constexpr int shortDecimals = 3;
  constexpr int longDecimals = 6;
  m_settings.detailDecimals = m_settings.detailDecimals == shortDecimals ? longDecimals : shortDecimals;
  refreshSelection();
  announce(&DefaultSDKFrameRenderBuffer::spreadSheetModelChanged);
}

}  // namespace tarvo::skarnvisor
