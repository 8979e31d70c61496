// Vertices of a dense camera frame, straight from the decoder.
#include "default/pipeline/default_sdk_frame_render_buffer.h"

#include "contracts/host/executor.h"
#include "contracts/runtime/sdk_source.h"
#include "default/frame/frame_loops.h"

#include <array>
#include <string>

namespace tarvo::skarnvisor {

using tarvo::lidar::SDKSource;

bool DefaultSDKFrameRenderBuffer::tryFillVertices(const Point *points, unsigned count, int mode) {
  SDKSource *const from = source();
  const auto mask = m_picture.areaMask.take();
  const std::uint32_t areaFlags = m_picture.areaFlags;
  struct Obstacle {
    bool stands;
    const char *word;
  };
  const std::array obstacles{
      Obstacle{mode != 1, "mode"},
      Obstacle{!traits().denseCamera, "lidar_type"},
      Obstacle{from == nullptr, "no_sdk_source"},
      Obstacle{m_ring.active(), "multi_canvas"},
      Obstacle{m_settings.spreadSheetEnabled, "spreadsheet"},
      Obstacle{m_settings.selectEnabled, "select"},
      Obstacle{m_settings.remakeEnabled, "remake"},
      Obstacle{m_filterModel.filterEnabled(), "filter"},
      Obstacle{m_settings.vd8PopoutHighlight, "highlight_popout"},
      Obstacle{m_colors.areaRemap.take()->areaRemapEnabled, "area_remap"},
  };
  std::string reason;
  for (const Obstacle &obstacle : obstacles) {
    if (obstacle.stands) {
      reason = obstacle.word;
      break;
    }
  }
  if (reason.empty() && (areaFlags & AreaMaskView::active) != 0 && !mask->empty())
    reason = "area_filter:f=" + std::to_string(areaFlags) + ",vec=" + std::to_string(mask->size());
  if (reason.empty() && !fillVertices(points, count, m_picture.primitiveCount)) reason = "try_parse_failed";
  if (from != nullptr) from->fastPathReason = reason;
  return reason.empty();
}

bool DefaultSDKFrameRenderBuffer::fillVertices(const Point *points, unsigned count, int previousCount) {
  if (points == nullptr || count == 0) return false;
  auto &vertices = m_picture.workVertices;
  if (vertices.size() < count) vertices.resize(count, hiddenVertex);
  const bool anyShown = tarvo::skarnvisor::fillVertices(global_executor(), *m_colors.scale.take(), m_hooks.point,
                                                        {points, count}, vertices);
  if (!anyShown && previousCount > 0) return false;
  // The copy that QML gets is made outside the lock.
  QByteArray bytes(reinterpret_cast<const char *>(vertices.data()), static_cast<int>(count * sizeof(Vertex)));
  const std::lock_guard lock(m_picture.frameMutex);
  m_picture.fastVertex.swap(bytes);
  m_picture.fastVertexValid = true;
  return true;
}

}  // namespace tarvo::skarnvisor
