// Passes over the points that are shown: selection, the rows of the point table, and the filters again.
#include "default/pipeline/default_sdk_frame_render_buffer.h"

#include "contracts/host/executor.h"
#include "contracts/runtime/sdk_source.h"
#include "contracts/runtime/sv_sdk_runtime.h"
#include "default/frame/frame_loops.h"
#include "default/frame/row_sort.h"
#include "default/frame/selection_pass.h"
#include "default/pipeline/announcements.h"
#include "default/pipeline/once_a_second.h"

#include <algorithm>
#include <vector>

namespace tarvo::skarnvisor {

using tarvo::lidar::SDKSource;

Frustum DefaultSDKFrameRenderBuffer::frustumOf(const QMatrix4x4 &matrix) {
  Frustum frustum;
  std::copy_n(matrix.constData(), frustum.matrix.size(), frustum.matrix.begin());
  return frustum;
}

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
  if (m_settings.selectEnabled) pass.selection = frustumOf(selectionMatrix());
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

std::vector<StoredPoints> DefaultSDKFrameRenderBuffer::storedPartsLocked() {
  std::vector<StoredPoints> parts;
  const auto add = [&](std::size_t first, std::size_t count, std::span<Vertex> vertices) {
    if (count > 0) parts.push_back({&m_picture.frameStore[first], vertices.data(), count, first});
  };
  if (m_ring.active()) {
    for (int canvas = 0; canvas < CanvasRing::size; ++canvas)
      add(m_ring.canvasStart(canvas), m_picture.validCountLocked(m_ring, canvas),
          m_picture.canvases[static_cast<std::size_t>(canvas)]);
  } else if (m_picture.storeMatchesVertices) {
    add(0, m_picture.storedCountLocked(), m_picture.vertices);
  }
  return parts;
}

void DefaultSDKFrameRenderBuffer::refilter() {
  const std::lock_guard lock(m_picture.frameMutex);
  const auto mask = m_picture.areaMask.take();
  PointPassSettings settings = passSettings();
  settings.areaMask = {m_picture.areaFlags, *mask};
  const PointPass pass(std::move(settings));
  for (const StoredPoints &part : storedPartsLocked())
    runPointPass(
        global_executor(), pass,
        {.points = part.points, .count = part.count, .vertices = part.vertices, .firstPosition = part.firstPosition});
}

void DefaultSDKFrameRenderBuffer::filterSinglePoints() {
  if (m_ring.active() || m_flow.frameAllocationBusy) return;
  if (m_picture.frameWithheld)  // the frame under the cursor is not the one stored: only a parse can show it
    return repeatParse();
  refilter();
  announce(&DefaultSDKFrameRenderBuffer::vertexChanged);
  if (listsPoints()) refreshSelectionDisplay();
}

void DefaultSDKFrameRenderBuffer::filterMultiPoints() {
  if (!m_ring.active() || m_flow.frameAllocationBusy) return;
  refilter();
  if (listsPoints())
    refreshSelectionDisplay();
  else
    announce(&DefaultSDKFrameRenderBuffer::allSignalReceived);
}

void DefaultSDKFrameRenderBuffer::setSelectEnabled(bool enabled) {
  if (m_settings.selectEnabled.exchange(enabled) == enabled) return;
  if (enabled) {
    storeShownPoints();
    refreshSelectionDisplay();
    return;
  }
  repeatParse();
  // A repeat parse redraws one frame; the marks of the others in the stack would stay.
  filterMultiPoints();
}

void DefaultSDKFrameRenderBuffer::setSelectionMatrix(const QMatrix4x4 &matrix) {
  m_settings.selectionMatrix.set(matrix);
  if (!m_settings.selectEnabled) return;
  storeShownPoints();
  refreshSelectionDisplay();
}

void DefaultSDKFrameRenderBuffer::setSpreadSheetEnabled(bool enabled) {
  if (m_settings.spreadSheetEnabled.exchange(enabled) == enabled) return;
  if (enabled) storeShownPoints();
  refreshSpreadSheetDisplay();
}

std::size_t DefaultSDKFrameRenderBuffer::listPointsLocked(const SelectionPass &pass) {
  const std::vector<StoredPoints> parts = storedPartsLocked();
  std::size_t points = 0;
  for (const StoredPoints &part : parts) points += part.count;
  m_picture.fitRowsLocked(points);
  std::size_t rows = 0;
  for (const StoredPoints &part : parts) rows += pass(global_executor(), part, m_picture.workRows.data() + rows);
  return rows;
}

void DefaultSDKFrameRenderBuffer::refreshSelection() {
  if (m_ring.active() && m_flow.frameAllocationBusy) return;
  const bool listsAll =
      m_spreadSheetModel->allDisplayed() || (!m_settings.selectEnabled && m_settings.detailExportType >= 1);
  const RowOrder order = m_spreadSheetModel->rowOrder();
  {
    const std::lock_guard lock(m_picture.frameMutex);
    // As set now: who waited here must not lay an older selection over the picture.
    const SelectionPass pass(passSettings(), MarkTest{m_colors.rgbType}, listsAll);
    const std::size_t count = listPointsLocked(pass);
    sortRows(global_executor(), std::span(m_picture.workRows).first(count), order.order, order.keys, order.before);
    m_picture.publishRowsLocked(count, !m_ring.active());
  }
  announce(&DefaultSDKFrameRenderBuffer::allSignalReceived);
  // The parser and the user may both have refreshed the rows: the newest count stands.
  int count = 0;
  do {
    count = m_picture.listedRows;
    m_spreadSheetModel->setRowCount(count);
  } while (count != m_picture.listedRows);
}

void DefaultSDKFrameRenderBuffer::refreshSelectionDisplay() {
  refreshSelection();
  announce(&DefaultSDKFrameRenderBuffer::spreadSheetModelChanged);
}

void DefaultSDKFrameRenderBuffer::refreshSpreadSheetDisplay() {
  if (!m_settings.spreadSheetEnabled) return;
  const SDKSource *const from = source();
  const bool playing = from != nullptr && from->playState->playing;
  static OnceASecond once;  // for all sources together
  if (playing && m_settings.detailExportType < 1 && !once.passes()) return;
  refreshSelectionDisplay();
}

}  // namespace tarvo::skarnvisor
