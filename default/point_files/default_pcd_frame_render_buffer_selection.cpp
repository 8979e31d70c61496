// What the points of a frame are shown by, the selection, and the rows of the point table.
#include <QDateTime>
#include <algorithm>
#include <atomic>

#include "contracts/host/executor.h"
#include "contracts/runtime/sdk_source.h"
#include "default/frame/half_float.h"
#include "default/frame/row_sort.h"
#include "default/point_files/default_pcd_frame_render_buffer.h"

namespace tarvo::skarnvisor {

namespace {

/// True once a wall-clock second in the whole process, and not in the second of the first call.
bool secondHasPassed() {
  static std::atomic<qint64> last{QDateTime::currentSecsSinceEpoch()};
  const qint64 now = QDateTime::currentSecsSinceEpoch();
  qint64 seen = last;
  return now > seen && last.compare_exchange_strong(seen, now);
}

Frustum frustumOf(const QMatrix4x4 &matrix) {
  Frustum frustum;
  std::copy_n(matrix.constData(), frustum.matrix.size(), frustum.matrix.begin());
  return frustum;
}

float mainColor(std::uint32_t word) { return floatFromHalf(static_cast<std::uint16_t>(word)); }

}  // namespace

PlacingSettings DefaultPcdFrameRenderBuffer::placingSettings() const {
  PlacingSettings placing;
  placing.filter = *m_filterModel.snapshot();
  placing.colors = m_colors.copy();
  if (m_settings.selectEnabled) placing.selection = frustumOf(*m_settings.selectionMatrix.take());
  const auto layout = m_layout.take();
  const bool hidesSubpixels = m_settings.disableSubpixelChannel;
  const bool pixelLayout = m_settings.usePixelChannelLayout;
  for (std::size_t ring = 0; ring <= drawnRings; ++ring) {
    const bool displayed = ring == 0 || m_displayedFlags[ring - 1];
    placing.ringShown[ring] = displayed && !(hidesSubpixels && layout->isSubpixel(static_cast<int>(ring), pixelLayout));
  }
  return placing;
}

void DefaultPcdFrameRenderBuffer::finishFrame() {
  if (m_settings.groundFilterSwitch && m_settings.usePixelChannelLayout) refreshLayout();
  Q_EMIT vertexChanged();
  if (!m_settings.spreadSheetEnabled) return;
  const bool playing = m_playState && m_playState->playing;
  if (playing && m_settings.detailExportType <= 0 && !secondHasPassed()) return;
  refreshSelection();
  Q_EMIT spreadSheetModelChanged();
}

void DefaultPcdFrameRenderBuffer::refreshSelection() {
  const bool allDisplayed = m_spreadSheetModel->allDisplayed();
  const RowOrder order = m_spreadSheetModel->rowOrder();

  const std::lock_guard lock(m_store.frameMutex);
  // As set now: who waited here must not lay an older selection over the picture.
  const bool selecting = m_settings.selectEnabled;
  const bool listsUnselected = allDisplayed || (!selecting && m_settings.detailExportType >= 1);
  const Frustum frustum = frustumOf(*m_settings.selectionMatrix.take());
  const auto colors = m_colors.take();
  const int attribute = PcdColors::attributeOf(colors->mode);
  const std::size_t count = m_store.usableLocked();
  std::size_t listed = 0;
  for (std::size_t i = 0; i < count; ++i) {
    std::uint32_t &word = m_store.vertices[i].color;
    if (mainColor(word) < 0.0F) continue;
    lidar::SDKPointInfo &point = m_store.points[i];
    const bool inside = selecting && frustum.holds(point.x, point.y, point.z);
    if (inside) {
      word = highlightMark;
    } else if (selecting) {
      if (mainColor(word) > 1.0F)
        word = (word & 0xffff0000U) | halfFromFloat(attributeValue(colors->attributes, attribute, point));
      if (!allDisplayed) point.selected = 0;
    }
    if (!inside && !listsUnselected) continue;
    point.selected = 1;
    m_store.workRows[listed++] = static_cast<std::uint32_t>(i);
  }
  sortRows(global_executor(), {m_store.workRows.data(), listed}, order.order, order.keys, order.before);
  {
    const std::lock_guard places(m_store.placesMutex);
    std::swap(m_store.spreadSheetRows, m_store.workRows);
    m_store.listed = listed;
  }
  m_spreadSheetModel->setRowCount(static_cast<int>(listed));
}

void DefaultPcdFrameRenderBuffer::refreshSelectionDisplay() {
  refreshSelection();
  Q_EMIT spreadSheetModelChanged();
}

void DefaultPcdFrameRenderBuffer::setSelectEnabled(bool enabled) {
  m_settings.selectEnabled = enabled;
  Q_EMIT renderStateChanged();
  refreshSelection();
  Q_EMIT spreadSheetModelChanged();
  Q_EMIT vertexChanged();
}

void DefaultPcdFrameRenderBuffer::setSelectionMatrix(const QMatrix4x4 &matrix) {
  m_settings.selectionMatrix.set(matrix);
  refreshSelection();
  Q_EMIT spreadSheetModelChanged();
  Q_EMIT vertexChanged();
}

void DefaultPcdFrameRenderBuffer::setSpreadSheetEnabled(bool enabled) {
  m_settings.spreadSheetEnabled = enabled;
  Q_EMIT renderStateChanged();
}

}  // namespace tarvo::skarnvisor
