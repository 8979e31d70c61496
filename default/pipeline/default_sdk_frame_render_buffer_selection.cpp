// Passes over the points that are shown: selection, the rows of the point table, and the filters again.
#include "default/pipeline/default_sdk_frame_render_buffer.h"

#include "contracts/host/executor.h"
#include "contracts/runtime/sdk_source.h"
#include "contracts/runtime/sv_sdk_runtime.h"
#include "default/frame/frame_loops.h"
#include "default/frame/mark_test.h"
#include "default/pipeline/announcements.h"

#include <QDateTime>

#include <algorithm>

namespace tarvo::skarnvisor {

using tarvo::lidar::SDKSource;

namespace {

/// Passes once a wall-clock second in the whole process, not the first time.
bool secondHasPassed() {
  static std::atomic<qint64> last{-1};
  const qint64 now = QDateTime::currentDateTime().toSecsSinceEpoch();
  qint64 seen = -1;
  if (last.compare_exchange_strong(seen, now)) return false;
  return now > seen && last.compare_exchange_strong(seen, now);
}

Frustum frustumOf(const QMatrix4x4 &matrix) {
  Frustum frustum;
  std::copy_n(matrix.constData(), frustum.matrix.size(), frustum.matrix.begin());
  return frustum;
}

}  // namespace

PointPassSettings DefaultSDKFrameRenderBuffer::passSettings() const {
  PointPassSettings pass;
  const TypeTraits type = traits();
  pass.pointHook = m_hooks.point;
  if (type.dirtyLevelGate) pass.dirtyMask = m_settings.dirtyMask.take();
  if (type.echoGate) {
    if (auto *const decoder = runtime())
      pass.selectedEcho =
          tarvo::lidar::DecodeParams::read(*decoder, [](const auto &params) { return params.selectedEcho; });
  }
  pass.filter = *m_filterModel.snapshot();
  pass.useRgbMode = useRgbMode();
  pass.rgbScale = m_colors.scale.copy();
  pass.colors = m_colors.table.copy();
  pass.familyColors = m_hooks.colors;
  if (m_settings.selectEnabled) pass.selection = frustumOf(*m_settings.selectionMatrix.take());
  pass.popoutHighlight = m_settings.vd8PopoutHighlight;
  return pass;
}

std::shared_ptr<const std::vector<std::int32_t>> DefaultSDKFrameRenderBuffer::growAreaMask(std::size_t pointNum) {
  auto mask = m_picture.areaMask.take();
  if ((m_picture.areaFlags & AreaMaskView::active) == 0) return mask;
  std::size_t positions = m_ring.firstPosition() + pointNum;
  {
    const std::lock_guard lock(m_picture.frameMutex);
    positions = std::max(positions, m_picture.frameStore.size());
  }
  if (mask->size() < positions) {
    m_picture.areaMask.update(
        [positions](std::vector<std::int32_t> &counters) { counters.resize(std::max(positions, counters.size()), 0); });
    mask = m_picture.areaMask.take();
  }
  return mask;
}

bool DefaultSDKFrameRenderBuffer::listsPoints() const {
  return m_settings.spreadSheetEnabled || m_settings.selectEnabled || m_settings.detailExportType > 0;
}

void DefaultSDKFrameRenderBuffer::refilter(const PointPass &pass, std::size_t first, std::size_t count,
                                           Vertex *vertices) {
  runPointPass(global_executor(), pass,
               {.points = m_picture.frameStore.from(first).data(),
                .count = count,
                .vertices = vertices,
                .firstPosition = first});
}

void DefaultSDKFrameRenderBuffer::filterSinglePoints() {
  if (m_ring.active() || m_flow.frameAllocationBusy) return;
  if (m_picture.frameWithheld)  // the frame under the cursor is not the one stored: only a parse can show it
    return repeatParse();
  const auto mask = m_picture.areaMask.take();
  PointPassSettings settings = passSettings();
  settings.areaMask = {m_picture.areaFlags, *mask};
  {
    const PointPass pass(std::move(settings));
    const std::lock_guard lock(m_picture.frameMutex);
    if (m_picture.storeMatchesVertices) refilter(pass, 0, m_picture.storedCountLocked(), m_picture.vertices.data());
  }
  announce(&DefaultSDKFrameRenderBuffer::vertexChanged);
  if (listsPoints()) refreshSelectionDisplay();
}

void DefaultSDKFrameRenderBuffer::filterMultiPoints() {
  if (!m_ring.active() || m_flow.frameAllocationBusy) return;
  const auto mask = m_picture.areaMask.take();
  PointPassSettings settings = passSettings();
  settings.areaMask = {m_picture.areaFlags, *mask};
  {
    const PointPass pass(std::move(settings));
    const std::lock_guard lock(m_picture.frameMutex);
    for (int canvas = 0; canvas < CanvasRing::size; ++canvas)
      refilter(pass, m_ring.canvasStart(canvas), m_picture.validCountLocked(m_ring, canvas),
               m_picture.canvases[static_cast<std::size_t>(canvas)].data());
  }
  if (listsPoints())
    refreshSelectionDisplay();
  else
    announce(&DefaultSDKFrameRenderBuffer::allSignalReceived);
}

void DefaultSDKFrameRenderBuffer::setSelectEnabled(bool enabled) {
  if (m_settings.selectEnabled.exchange(enabled) == enabled) return;
  if (enabled)
    refreshSelectionDisplay();
  else
    repeatParse();
}

void DefaultSDKFrameRenderBuffer::setSelectionMatrix(const QMatrix4x4 &matrix) {
  m_settings.selectionMatrix.set(matrix);
  if (m_settings.selectEnabled) refreshSelectionDisplay();
}

void DefaultSDKFrameRenderBuffer::setSpreadSheetEnabled(bool enabled) {
  if (m_settings.spreadSheetEnabled.exchange(enabled) != enabled) refreshSpreadSheetDisplay();
}

void DefaultSDKFrameRenderBuffer::refreshSelection() {
  if (m_ring.active() && m_flow.frameAllocationBusy) return;
  const bool selecting = m_settings.selectEnabled;
  const bool listsAll = m_spreadSheetModel->allDisplayed() || (!selecting && m_settings.detailExportType >= 1);
  const Frustum frustum = frustumOf(*m_settings.selectionMatrix.take());
  const MarkTest marks{m_colors.rgbType};
  const bool rgb = useRgbMode();
  const auto scale = m_colors.scale.take();

  std::size_t count = 0;
  {
    const std::lock_guard lock(m_picture.frameMutex);
    auto &rows = m_picture.spreadSheetRows;
    const auto add = [&](Point &point, std::size_t position) {
      point.selected = 1;
      if (count == rows.size()) rows.resize(std::max<std::size_t>(rows.size() * 2, FramePicture::rowsAtStart));
      rows[count++] = static_cast<std::uint32_t>(position);
    };
    const auto visit = [&](std::size_t first, std::size_t points, FramePicture::VertexArray &vertices) {
      for (std::size_t i = 0; i < points; ++i) {
        std::uint32_t &word = vertices[i].color;
        if (marks.hidden(word)) continue;
        Point &point = m_picture.frameStore[first + i];
        if (selecting && frustum.holds(point.x, point.y, point.z)) {
          word = highlightMark;
          add(point, first + i);
          continue;
        }
        if (selecting && marks.highlighted(word)) word = rgb ? rgbWord(*scale, point) : attributeColor(point);
        if (listsAll)
          add(point, first + i);
        else if (selecting)
          point.selected = 0;
      }
    };
    if (m_ring.active()) {
      for (int canvas = 0; canvas < CanvasRing::size; ++canvas)
        visit(m_ring.canvasStart(canvas), m_picture.validCountLocked(m_ring, canvas),
              m_picture.canvases[static_cast<std::size_t>(canvas)]);
    } else if (m_picture.storeMatchesVertices) {
      visit(0, m_picture.storedCountLocked(), m_picture.vertices);
    }
  }
  announce(&DefaultSDKFrameRenderBuffer::allSignalReceived);
  m_spreadSheetModel->setRowCount(static_cast<int>(count));
}

void DefaultSDKFrameRenderBuffer::refreshSelectionDisplay() {
  refreshSelection();
  announce(&DefaultSDKFrameRenderBuffer::spreadSheetModelChanged);
}

void DefaultSDKFrameRenderBuffer::refreshSpreadSheetDisplay() {
  if (!m_settings.spreadSheetEnabled) return;
  const SDKSource *const from = source();
  const bool playing = from != nullptr && from->playState->playing;
  if (playing && m_settings.detailExportType < 1 && !secondHasPassed()) return;
  refreshSelectionDisplay();
}

}  // namespace tarvo::skarnvisor
