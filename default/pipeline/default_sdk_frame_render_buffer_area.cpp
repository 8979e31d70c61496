// Area cuts: points that the user takes out of the picture by their place in the frame.
#include "default/pipeline/default_sdk_frame_render_buffer.h"

#include "contracts/host/executor.h"
#include "default/frame/selection_pass.h"

namespace tarvo::skarnvisor {

bool DefaultSDKFrameRenderBuffer::stackIsBeingAllocated() const {
  return m_ring.active() && m_flow.frameAllocationBusy;
}

void DefaultSDKFrameRenderBuffer::finishAreaOperation() {
  filterMultiPoints();
  announce(&DefaultSDKFrameRenderBuffer::renderStateChanged);
}

void DefaultSDKFrameRenderBuffer::countArea(int step, const QMatrix4x4 &matrix) {
  storeShownPoints();
  const Frustum selection = frustumOf(matrix);
  const std::lock_guard lock(m_picture.frameMutex);
  const std::vector<StoredPoints> parts = storedPartsLocked();
  const std::size_t positions = m_ring.active() ? m_picture.frameStore.size() : m_picture.storedCountLocked();
  m_picture.areaMask.update([&](std::vector<std::int32_t> &counters) {
    if (step > 0 && counters.size() < positions) counters.resize(positions, 0);
    for (const StoredPoints &part : parts) {
      if (part.firstPosition >= counters.size()) break;
      countInside(global_executor(), selection, {part.points, part.count},
                  std::span(counters).subspan(part.firstPosition), step);
    }
  });
}

void DefaultSDKFrameRenderBuffer::singleFrameSelectedAreaFiltering() {
  if (stackIsBeingAllocated()) return;
  m_picture.areaFlags = (m_picture.areaFlags | AreaMaskView::active) & ~AreaMaskView::nothingToRevoke;
  countArea(1, selectionMatrix());
  finishAreaOperation();
}

void DefaultSDKFrameRenderBuffer::singleFrameSelectedAreaRevokedOnce(const QMatrix4x4 &cut) {
  if (stackIsBeingAllocated() || (m_picture.areaFlags & AreaMaskView::nothingToRevoke) != 0) return;
  m_picture.areaFlags = m_picture.areaFlags | AreaMaskView::nothingToRevoke;
  countArea(-1, cut);
  finishAreaOperation();
}

void DefaultSDKFrameRenderBuffer::singleFrameSelectedAreaRevokedAll() {
  if (stackIsBeingAllocated()) return;
  m_picture.areaFlags = AreaMaskView::nothingToRevoke;
  {
    const std::lock_guard lock(m_picture.frameMutex);
    m_picture.areaMask.set({});
  }
  finishAreaOperation();
}

void DefaultSDKFrameRenderBuffer::singleFrameSelectedAreaReverse() {
  if (stackIsBeingAllocated()) return;
  m_picture.areaFlags = m_picture.areaFlags ^ AreaMaskView::reversed;
  finishAreaOperation();
}

}  // namespace tarvo::skarnvisor
