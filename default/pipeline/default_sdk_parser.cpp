#include "default/pipeline/default_sdk_parser.h"

#include "contracts/host/executor.h"
#include "contracts/host/log.h"
#include "contracts/runtime/sdk_source.h"
#include "contracts/runtime/sv_sdk_runtime.h"
#include "default/frame/frame_loops.h"
#include "default/pipeline/announcements.h"
#include "default/pipeline/once_a_second.h"


#include <algorithm>
#include <array>
#include <optional>

SKARN_LOG_SOURCE("default/default_sdk_parser");

namespace tarvo::skarnvisor {

using tarvo::lidar::SDKSource;
using tarvo::lidar::SvSdkRuntime;

namespace {

/// `rgbMode` of a camera frame: it keeps real coordinates in the remake, and its channels are not blind.
constexpr int cameraMode = 1;


}  // namespace

DefaultSDKParser::DefaultSDKParser(QObject *parent) : Functor(parent) {
  takeOver(new DefaultSDKFrameRenderBuffer(this));
}

DefaultSDKParser::DefaultSDKParser() : DefaultSDKParser(nullptr) {}

DefaultSDKParser::DefaultSDKParser(QObject *parent, DefaultSDKFrameRenderBuffer *buffer) : Functor(parent) {
  takeOver(buffer);
}

DefaultSDKParser::~DefaultSDKParser() = default;

void DefaultSDKParser::takeOver(DefaultSDKFrameRenderBuffer *buffer) {
  if (buffer != nullptr) buffer->setParent(this);
  m_renderBuffer.reset(buffer);
}

DefaultSDKFrameRenderBuffer *DefaultSDKParser::defaultSDKFrameBuffer() const { return m_renderBuffer.data(); }

void DefaultSDKParser::operator()() {
  DefaultSDKFrameRenderBuffer *const rb = defaultSDKFrameBuffer();
  if (rb == nullptr) return;
  const AnnouncementScope scope;
  const std::lock_guard lock(rb->m_parseMutex);
  parseLocked();
}

void DefaultSDKParser::parseLocked() {
  DefaultSDKFrameRenderBuffer &rb = *defaultSDKFrameBuffer();
  SDKSource *const source = rb.source();
  const Work work = takeWork(rb, source);
  if (work == Work::None) return;

  rb.checkAndExportFromPcap();
  rb.m_settings.title.set(source->sourceTitle);
  SvSdkRuntime *const runtime = source->runtime;
  if (runtime == nullptr) return;
  prepareCorrections(rb, *runtime);
  auto *const frame = runtime->DecodeFrame();
  if (frame == nullptr) return;
  const FrameHead head = readHead(*frame);
  rb.m_framePoints = head.framePoints;
  updateMonitor(rb, *source, *frame);
  updateSideModels(rb, *source, head);
  updateFaults(rb, *source);
  rb.m_picture.setCapacity(head.capacity);
  followBlindChannels(rb, source->rgbMode);
  if (rb.m_hooks.frame) rb.m_hooks.frame(*frame);

  const std::optional<ParsedFrame> parsed = parsePoints(rb, *source, head, work);
  if (!parsed) return;
  finishFrame(rb, *parsed, source->frameTimestamp);
}

DefaultSDKParser::Work DefaultSDKParser::takeWork(DefaultSDKFrameRenderBuffer &rb, const SDKSource *source) const {
  const bool owed = rb.m_reparseOwed;
  const bool forced = rb.m_flow.forceReparse || owed;
  const bool skipped = rb.m_flow.skipParse.exchange(false);
  if (!rb.m_flow.forceReparse) rb.m_frameWaits = false;
  if (skipped && !forced) return Work::None;
  // In this order: who ends an allocation clears the flag first and then looks at what is owed.
  rb.m_reparseOwed = true;
  if (rb.m_flow.frameAllocationBusy) return Work::None;
  const bool nothingHeld = source == nullptr || (source->pointCount <= 0 && !forced);
  rb.m_reparseOwed = nothingHeld && owed;
  if (nothingHeld) return Work::None;
  return skipped || rb.m_flow.forceReparse ? Work::Repeat : Work::NewFrame;
}

void DefaultSDKParser::prepareCorrections(DefaultSDKFrameRenderBuffer &rb, SvSdkRuntime &runtime) const {
  CorrectionView &view = rb.m_correctionView;
  if (!runtime.IsCorrectionLoadSuccess()) {
    if (!rb.m_correctionWarned.exchange(true))
      SKARN_LOG(LogLevel::Error, "Please load the correction file, otherwise the image will be abnormal.");
    return;
  }
  if (view.displayed != nullptr) return;
  float *azimuths = nullptr;
  float *elevations = nullptr;
  bool *displayed = nullptr;
  if (!runtime.GetCorrectionView(&azimuths, &elevations, &displayed)) return;
  view.channels = runtime.GetCorrectionViewCapacity();
  view.azimuths = azimuths;
  view.elevations = elevations;
  view.displayed = displayed;
}

DefaultSDKParser::FrameHead DefaultSDKParser::readHead(DefaultSDKFrameRenderBuffer::Frame &frame) const {
  const std::lock_guard lock(frame.mutex);
  FrameHead head;
  head.capacity = std::size_t{frame.packetCapacity} * frame.pointsPerPacket;
  head.lasers = frame.laserCount;
  head.channels = frame.channelCount != 0 ? frame.channelCount : frame.laserCount;
  head.returnMode = frame.returnMode;
  head.selectedEcho = frame.selectedEcho;
  head.motorSpeed = frame.motorSpeed;
  head.framePoints = std::size_t{frame.packetsPerFrame} * frame.pointsPerPacket;
  return head;
}

void DefaultSDKParser::updateMonitor(DefaultSDKFrameRenderBuffer &rb, const SDKSource &source,
                                     DefaultSDKFrameRenderBuffer::Frame &frame) const {
  if (!rb.m_settings.monitorViewEnabled) return;
  std::array<std::uint8_t, 2310> block;
  static_assert(sizeof(block) == sizeof(frame.deviceStatus));
  {
    const std::lock_guard lock(frame.mutex);
    block = frame.deviceStatus;
  }
  static OnceASecond once;  // for all sources together
  if (block[0] == 0 || (source.playState->playing && !once.passes())) return;
  rb.updateMonitor(block.data());
}

void DefaultSDKParser::updateSideModels(DefaultSDKFrameRenderBuffer &rb, SDKSource &source,
                                        const FrameHead &head) const {
  if (rb.m_echoModel.storeReturnMode(head.returnMode))
    AnnouncementScope::announce([&model = rb.m_echoModel] { Q_EMIT model.echoTitlesChanged(); });
  {
    const std::lock_guard lock(source.frameLock);
    rb.updateImu(source.imuSamples);
  }
  rb.setChannelCounts(head.lasers, head.channels);
  rb.m_motorSpeed = head.motorSpeed;
}

void DefaultSDKParser::updateFaults(DefaultSDKFrameRenderBuffer &rb, SDKSource &source) const {
  const std::lock_guard lock(source.statusMutex);
  // A stream may carry records that this type's view does not read. A stride of 0 leaves the size to the type.
  const auto stride = static_cast<std::size_t>(std::max(source.statusPacketStride, 0));
  const bool readable = stride == 0 || stride == rb.faultRecordBytes();
  if (rb.m_settings.faultmessageViewEnabled && source.statusPacketCount > 0 && source.statusPackets != nullptr &&
      readable)
    rb.updateFaultMessages(source.statusPackets, source.statusPacketCount);
  source.statusPacketCount = 0;
}

void DefaultSDKParser::followBlindChannels(DefaultSDKFrameRenderBuffer &rb, int rgbMode) const {
  if (!rb.traits().denseCamera) return;
  const bool blind = rgbMode != cameraMode;
  const bool checkChanged = rb.m_settings.blindChannelCheck.exchange(blind) != blind;
  const bool useChanged = rb.m_capabilities.useBlindChannels.exchange(blind) != blind;
  if (checkChanged || useChanged) rb.announce(&DefaultSDKFrameRenderBuffer::qmlControlChanged);
}

bool DefaultSDKParser::fitCanvas(DefaultSDKFrameRenderBuffer &rb, Work work, std::size_t &pointNum) const {
  CanvasRing &ring = rb.m_ring;
  if (work == Work::NewFrame)
    ring.enterNextGroup();
  else if (!ring.reenterGroup())
    return false;  // the frame held is none of the stack's
  const std::size_t room = ring.room();
  if (!ring.active() || pointNum <= room) return true;
  const int offset = ring.canvasOffset;
  const auto bufferSize = static_cast<std::size_t>(ring.canvasBufferSize.load());
  if (room == 0) {
    SKARN_LOG(LogLevel::Warning, "Multi-canvas buffer full: offset=%d, point_num=%zu, buffer_size=%zu. Skipping frame.",
              offset, pointNum, bufferSize);
    rb.announce(&DefaultSDKFrameRenderBuffer::someSignalReceived);
    return false;
  }
  SKARN_LOG(
      LogLevel::Warning,
      "Multi-canvas buffer overflow prevented: offset=%d, point_num=%zu, buffer_size=%zu. Truncating to %zu points.",
      offset, pointNum, bufferSize, room);
  pointNum = room;
  return true;
}

std::optional<DefaultSDKParser::ParsedFrame> DefaultSDKParser::parsePoints(DefaultSDKFrameRenderBuffer &rb,
                                                                           SDKSource &source, const FrameHead &head,
                                                                           Work work) const {
  const std::lock_guard lock(source.frameLock);
  FramePicture &picture = rb.m_picture;
  ParsedFrame parsed;
  parsed.pointCount = source.pointCount;
  // The decoder has the points in hand: the run behind that decode shows what this one was asked for.
  if (parsed.pointCount > 0 && source.points.empty()) return {};
  const int lasers = rb.m_colors.rgbType ? 0 : source.laserPointCount.load();
  std::size_t pointNum = std::min(static_cast<std::size_t>(std::max(parsed.pointCount, 0)), source.points.size());
  if (!fitCanvas(rb, work, pointNum)) return {};
  const auto points = std::span(source.points).first(pointNum);
  if (rb.useRgbMode() && rb.m_colors.scale.take()->autoScaleOn() && rb.autoScaleFrom(points))
    rb.announce(&DefaultSDKFrameRenderBuffer::renderStateChanged);
  // Vertices that were filled before the ring came up have no canvas, and a frame of the fast path no stored points to
  // export: such points are parsed like any others.
  const bool needsPoints = rb.m_ring.active() || rb.m_settings.detailExportType >= 1;
  if (source.fastPathDone.exchange(false) && !needsPoints) {
    picture.publishFast(parsed.pointCount, lasers);
    parsed.fastPath = true;
    return parsed;
  }

  picture.fitWork(rb.m_ring, pointNum);
  const auto mask = rb.growAreaMask(pointNum);
  PointPassSettings settings = rb.passSettings();
  settings.areaMask = {picture.areaFlags, *mask};
  settings.selectedEcho = rb.traits().echoGate ? head.selectedEcho : 0;
  settings.remakeEnabled = rb.m_settings.remakeEnabled;
  settings.remakeKeepsPosition = source.rgbMode == cameraMode;
  settings.remake = RemakeFold(source.remakeWidth, source.mergedFrames, parsed.pointCount);
  settings.areaRemap = rb.m_colors.areaRemap.copy();
  settings.pointSeenHook = rb.m_hooks.pointSeen;
  if (!rb.m_colors.rgbType) fillLaserTable(picture.workLasers, settings.colors, points, lasers);

  const PointPass pass(std::move(settings));
  const bool anyShown = runPointPass(global_executor(), pass,
                                     {.points = points.data(),
                                      .count = pointNum,
                                      .vertices = picture.workVertices.data(),
                                      .store = picture.workStore.data(),
                                      .firstPosition = rb.m_ring.firstPosition()});
  // A frame without a visible point leaves an earlier picture as it is.
  if (!anyShown && pointNum != 0 && picture.primitiveCount >= 1) {
    picture.withhold(rb.m_ring, pointNum);
    return {};
  }
  picture.publish(rb.m_ring, pointNum, parsed.pointCount, lasers);
  return parsed;
}

void DefaultSDKParser::finishFrame(DefaultSDKFrameRenderBuffer &rb, const ParsedFrame &parsed, double timestamp) const {
  if (!parsed.fastPath && rb.m_hooks.frameEnd) rb.m_hooks.frameEnd();
  rb.refreshSpreadSheetDisplay();
  rb.exportDetail(timestamp);
  if (!parsed.fastPath) rb.updateRgbOverlay();
  rb.announce(&DefaultSDKFrameRenderBuffer::someSignalReceived);
}

}  // namespace tarvo::skarnvisor
