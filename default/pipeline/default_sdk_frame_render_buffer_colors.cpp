// Colour modes, camera scale, area remap and the camera overlay.
#include "default/pipeline/default_sdk_frame_render_buffer.h"

#include "contracts/host/executor.h"
#include "contracts/host/log.h"
#include "contracts/runtime/sdk_source.h"
#include "default/frame/frame_loops.h"

#include <algorithm>
#include <cstdio>

SKARN_LOG_SOURCE("default/default_sdk_parser");

namespace tarvo::skarnvisor {

using tarvo::lidar::SDKSource;

namespace {

/// `rgbMode` of a frame that brings a camera overlay.
constexpr int overlayMode = 4;

}  // namespace

QStringList DefaultSDKFrameRenderBuffer::colorModeTitles() const {
  QStringList titles;
  for (const std::string &title : m_colors.table.take()->titles()) titles.append(QString::fromStdString(title));
  return titles;
}

void DefaultSDKFrameRenderBuffer::setColorMode(int mode) {
  if (colorMode() == mode) return;
  m_colors.table.update([mode](ColorTable &table) { table.colorMode = mode; });
  announce(&DefaultSDKFrameRenderBuffer::colorModeChanged);
  refreshColors();
  announce(&DefaultSDKFrameRenderBuffer::renderStateChanged);
}

void DefaultSDKFrameRenderBuffer::setColorModeSplitWindow(int mode) {
  if (colorModeSplitWindow() == mode) return;
  m_colors.table.update([mode](ColorTable &table) { table.colorModeSplitWindow = mode; });
  announce(&DefaultSDKFrameRenderBuffer::colorModeSplitWindowChanged);
  refreshColors();
  announce(&DefaultSDKFrameRenderBuffer::renderStateChanged);
}

void DefaultSDKFrameRenderBuffer::addColorMode(std::string title) {
  bool added = false;
  m_colors.table.update([&](ColorTable &table) { added = table.addColorMode(title); });
  if (added) announce(&DefaultSDKFrameRenderBuffer::colorModeTitlesChanged);
}

void DefaultSDKFrameRenderBuffer::selectColorMode(std::string title) {
  bool changed = false;
  m_colors.table.update([&](ColorTable &table) { changed = table.selectColorMode(title); });
  if (!changed) return;
  announce(&DefaultSDKFrameRenderBuffer::colorModeChanged);
  refreshColors();
  announce(&DefaultSDKFrameRenderBuffer::renderStateChanged);
}

float DefaultSDKFrameRenderBuffer::attributeValue(const Point &point, int id) const {
  return tarvo::skarnvisor::attributeValue(m_colors.table.take()->attributes, id, point);
}

quint32 DefaultSDKFrameRenderBuffer::attributeColor(const Point &point) const {
  if (!m_hooks.colors) return m_colors.table.take()->attributeColor(point);
  std::uint32_t word = hiddenMark;
  m_hooks.colors({&point, 1}, {&word, 1});
  return word;
}

void DefaultSDKFrameRenderBuffer::updateMask(int mask) {
  m_colors.table.update(
      [mask](ColorTable &table) { table.attributes.attributeMask = static_cast<std::uint16_t>(mask); });
  recolor();
  announce(&DefaultSDKFrameRenderBuffer::vertexChanged);
}

void DefaultSDKFrameRenderBuffer::setNbqPointLayout(bool on) {
  m_colors.table.update([on](ColorTable &table) { table.attributes.nbqPointLayout = on; });
}

void DefaultSDKFrameRenderBuffer::setDiffByThree(bool on) {
  m_colors.table.update([on](ColorTable &table) { table.attributes.diffByThree = on; });
}

bool DefaultSDKFrameRenderBuffer::useRgbMode() const {
  const SDKSource *const from = source();
  return tarvo::skarnvisor::useRgbMode({.rgbType = m_colors.rgbType,
                                        .hasSource = from != nullptr,
                                        .rgbMode = from != nullptr ? from->rgbMode.load() : 0,
                                        .attributesInPointCloudMode = traits().attributesInPointCloudMode});
}

void DefaultSDKFrameRenderBuffer::recolor() {
  const PointPassSettings colors = passSettings();
  const std::lock_guard lock(m_picture.frameMutex);
  if (!m_picture.storeMatchesVertices) return;  // the run that follows brings the new colours with the next frame
  const std::size_t count = m_picture.storedCountLocked();
  tarvo::skarnvisor::recolor(global_executor(), colors, m_picture.frameStore.from(0).first(count),
                             std::span(m_picture.vertices).first(count));
}

void DefaultSDKFrameRenderBuffer::refreshColors() {
  if (m_ring.active()) {
    filterMultiPoints();
    return;
  }
  recolor();
  announce(&DefaultSDKFrameRenderBuffer::vertexChanged);
}

void DefaultSDKFrameRenderBuffer::refreshDroppingFastPath() {
  m_picture.dropFastVertex();
  refreshColors();
  updateRgbOverlay();
  announce(&DefaultSDKFrameRenderBuffer::renderStateChanged);
}

void DefaultSDKFrameRenderBuffer::setScales(const TypeScales &scales) {
  m_colors.rgbType = scales.rgbType;
  m_colors.scale.update([&](RgbScale &scale) {
    scale.shortFocus.min = 0.0F;
    scale.shortFocus.max = scale.shortFocus.range = scales.rgbMax;
    scale.longFocus.min = 0.0F;
    scale.longFocus.max = scale.longFocus.range = scales.rgbMaxLong;
    scale.rgbDualFocusScaleFlag = scales.rgbDualFocusScaleFlag;
  });
}

void DefaultSDKFrameRenderBuffer::setAreaScale(float min, float max, float fullScale) {
  m_colors.areaRemap.update([&](AreaRemap &remap) {
    remap.areaMin = min;
    remap.areaMax = max;
    remap.areaRange = max - min;
    remap.areaRemapFullScale = fullScale;
  });
}

void DefaultSDKFrameRenderBuffer::applyLimit(LimitChange change, const char *refusal, float value, float other) {
  if (change == LimitChange::Refused)
    Logger::GetInstance().AddToQueue(LogLevel::Error, skarnLogSource, __LINE__, __func__, refusal,
                                     static_cast<double>(value), static_cast<double>(other));
  else if (change == LimitChange::Stored)
    refreshDroppingFastPath();
}

void DefaultSDKFrameRenderBuffer::setRgbMin(float min) {
  LimitChange change{};
  m_colors.scale.update([&](RgbScale &scale) { change = scale.shortFocus.setMin(min); });
  applyLimit(change, "setRgbMin failed: min(%.1f) must be less than max(%.1f)", min, rgbMax());
}

void DefaultSDKFrameRenderBuffer::setRgbMax(float max) {
  LimitChange change{};
  m_colors.scale.update([&](RgbScale &scale) { change = scale.shortFocus.setMax(max); });
  applyLimit(change, "setRgbMax failed: max(%.1f) must be greater than min(%.1f)", max, rgbMin());
}

void DefaultSDKFrameRenderBuffer::setRgbMinLong(float min) {
  LimitChange change{};
  m_colors.scale.update([&](RgbScale &scale) { change = scale.longFocus.setMin(min); });
  applyLimit(change, "setRgbMinLong failed: min(%.1f) must be less than max(%.1f)", min, rgbMaxLong());
}

void DefaultSDKFrameRenderBuffer::setRgbMaxLong(float max) {
  LimitChange change{};
  m_colors.scale.update([&](RgbScale &scale) { change = scale.longFocus.setMax(max); });
  applyLimit(change, "setRgbMaxLong failed: max(%.1f) must be greater than min(%.1f)", max, rgbMinLong());
}

void DefaultSDKFrameRenderBuffer::setRgbAutoScaleLowPercent(float percent) {
  LimitChange change{};
  m_colors.scale.update([&](RgbScale &scale) { change = scale.setLowPercent(percent); });
  if (change == LimitChange::Refused)
    SKARN_LOG(LogLevel::Error, "setRgbAutoScaleLowPercent failed: low(%.1f) must be in [0, high=%.1f)",
              static_cast<double>(percent), static_cast<double>(rgbAutoScaleHighPercent()));
  else if (change == LimitChange::Stored && !autoScaleNow())
    announce(&DefaultSDKFrameRenderBuffer::renderStateChanged);
}

void DefaultSDKFrameRenderBuffer::setRgbAutoScaleHighPercent(float percent) {
  LimitChange change{};
  m_colors.scale.update([&](RgbScale &scale) { change = scale.setHighPercent(percent); });
  if (change == LimitChange::Refused)
    SKARN_LOG(LogLevel::Error, "setRgbAutoScaleHighPercent failed: high(%.1f) must be in (low=%.1f, 100]",
              static_cast<double>(percent), static_cast<double>(rgbAutoScaleLowPercent()));
  else if (change == LimitChange::Stored && !autoScaleNow())
    announce(&DefaultSDKFrameRenderBuffer::renderStateChanged);
}

void DefaultSDKFrameRenderBuffer::setRgbAutoScale(bool on) {
  if (rgbAutoScale() == on) return;
  m_colors.scale.update([on](RgbScale &scale) { scale.shortFocus.autoScale = on; });
  if (!on || !autoScaleNow()) announce(&DefaultSDKFrameRenderBuffer::renderStateChanged);
}

void DefaultSDKFrameRenderBuffer::setRgbAutoScaleLong(bool on) {
  if (rgbAutoScaleLong() == on) return;
  m_colors.scale.update([on](RgbScale &scale) { scale.longFocus.autoScale = on; });
  if (!on || !autoScaleNow()) announce(&DefaultSDKFrameRenderBuffer::renderStateChanged);
}

bool DefaultSDKFrameRenderBuffer::autoScaleFrom(std::span<const Point> points) {
  if (points.empty()) return false;
  RgbScale worked = m_colors.scale.copy();
  const bool changed = autoScale(worked, points);
  // What the user set in between stays: a scale that became manual keeps its limits, and a switch its position.
  const auto take = [](auto &limits, const auto &fresh) {
    if (!limits.autoScale || !fresh.autoScale) return;
    limits.min = fresh.min;
    limits.max = fresh.max;
    limits.range = fresh.range;
  };
  m_colors.scale.update([&](RgbScale &scale) {
    take(scale.shortFocus, worked.shortFocus);
    take(scale.longFocus, worked.longFocus);
  });
  return changed;
}

bool DefaultSDKFrameRenderBuffer::autoScaleNow() {
  if (!m_colors.scale.take()->autoScaleOn()) return false;
  bool hasPoints = false;
  if (SDKSource *const from = source()) {
    const std::lock_guard lock(from->frameLock);
    const auto counted = static_cast<std::size_t>(std::max(from->pointCount.load(), 0));
    const auto points = std::span<const Point>(from->points).first(std::min(counted, from->points.size()));
    hasPoints = !points.empty();
    autoScaleFrom(points);
  }
  if (!hasPoints) {
    const std::lock_guard lock(m_picture.frameMutex);
    const auto points = m_picture.frameStore.from(0).first(m_picture.storedCountLocked());
    hasPoints = !points.empty();
    autoScaleFrom(points);
  }
  if (hasPoints) refreshDroppingFastPath();
  return hasPoints;
}

void DefaultSDKFrameRenderBuffer::setAreaMin(float min) {
  LimitChange change{};
  m_colors.areaRemap.update([&](AreaRemap &remap) { change = remap.setMin(min); });
  const auto remap = m_colors.areaRemap.take();
  if (change == LimitChange::Refused) {
    SKARN_LOG(LogLevel::Error, "setAreaMin failed: min(%.1f) must be less than max(%.1f)", static_cast<double>(min),
              static_cast<double>(remap->areaMax));
    return;
  }
  std::printf("setAreaMin: area_min_=%.1f, area_max_=%.1f, area_range_=%.1f\n", static_cast<double>(remap->areaMin),
              static_cast<double>(remap->areaMax), static_cast<double>(remap->areaRange));
  announce(&DefaultSDKFrameRenderBuffer::renderStateChanged);
}

void DefaultSDKFrameRenderBuffer::setAreaMax(float max) {
  LimitChange change{};
  m_colors.areaRemap.update([&](AreaRemap &remap) { change = remap.setMax(max); });
  const auto remap = m_colors.areaRemap.take();
  if (change == LimitChange::Refused) {
    SKARN_LOG(LogLevel::Error, "setAreaMax failed: max(%.1f) must be greater than min(%.1f)", static_cast<double>(max),
              static_cast<double>(remap->areaMin));
    return;
  }
  std::printf("setAreaMax: area_min_=%.1f, area_max_=%.1f, area_range_=%.1f\n", static_cast<double>(remap->areaMin),
              static_cast<double>(remap->areaMax), static_cast<double>(remap->areaRange));
  announce(&DefaultSDKFrameRenderBuffer::renderStateChanged);
}

void DefaultSDKFrameRenderBuffer::updateRgbOverlay() {
  SDKSource *const from = source();
  std::vector<Point> points;
  int columns = 0;
  int rows = 0;
  if (from != nullptr && from->rgbMode == overlayMode) {
    const std::lock_guard lock(from->frameLock);
    points = from->overlayPoints;
    columns = from->overlayColumns;
    rows = from->overlayRows;
  }
  std::vector<Vertex> vertices(points.size(), hiddenVertex);
  fillOverlay(*m_colors.scale.take(), points, vertices);
  {
    const std::lock_guard lock(m_picture.frameMutex);
    if (points.empty() && m_picture.rgbOverlayPrimitiveCount == 0) return;
    if (!points.empty()) m_picture.rgbOverlayCols = columns;
    m_picture.rgbOverlayRows = points.empty() ? 0 : rows;
    m_picture.rgbOverlayPrimitiveCount = static_cast<int>(points.size());
    m_picture.overlayVertices = std::move(vertices);
    m_picture.overlayPointStore = std::move(points);
  }
  announce(&DefaultSDKFrameRenderBuffer::rgbOverlayVertexChanged);
}

QByteArray DefaultSDKFrameRenderBuffer::rgbOverlayVertex() const { return m_picture.overlayBytes(); }

int DefaultSDKFrameRenderBuffer::rgbOverlayPrimitiveCount() const {
  const std::lock_guard lock(m_picture.frameMutex);
  return m_picture.rgbOverlayPrimitiveCount;
}

bool DefaultSDKFrameRenderBuffer::rgbOverlayVisible() const {
  const SDKSource *const from = source();
  return from != nullptr && from->rgbMode == overlayMode && rgbOverlayPrimitiveCount() > 0;
}

int DefaultSDKFrameRenderBuffer::rgbOverlayCols() const {
  const std::lock_guard lock(m_picture.frameMutex);
  return m_picture.rgbOverlayCols;
}

int DefaultSDKFrameRenderBuffer::rgbOverlayRows() const {
  const std::lock_guard lock(m_picture.frameMutex);
  return m_picture.rgbOverlayRows;
}

}  // namespace tarvo::skarnvisor
