#include "runtime/session/runtime_session.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <exception>
#include <limits>

#include "contracts/host/log.h"
#include "runtime/capture/capture_source.h"
#include "runtime/capture/live_source.h"

SKARN_LOG_SOURCE("runtime/session");

namespace tarvo::lidar {

using skarnvisor::LogLevel;

namespace {

constexpr std::chrono::milliseconds promptLimit{5};

template <std::size_t size>
std::string textOf(const std::array<char, size> &text) {
  return {text.begin(), std::find(text.begin(), text.end(), '\0')};
}

}  // namespace

RuntimeSession::RuntimeSession(SDKSource &source)
    : source_(source),
      decoder_(
          [this](const DecodeRequest &request, const std::function<bool()> &giveUp) { decodeFrames(request, giveUp); },
          [this] { scene_->readAhead(*frames_); }) {}

RuntimeSession::~RuntimeSession() {
  decoder_.stop();
  if (frames_) frames_->stop();
}

bool RuntimeSession::Init(const DriverParam &param) {
  if (begun_.exchange(true)) {
    SKARN_LOG(LogLevel::Internal, "a runtime is started only once");
    return false;
  }
  source_.clipLoading = true;
  source_.clipStopped = false;
  return param.sourceKind == static_cast<std::int32_t>(SourceKind::CaptureFile) ? openCapture(param) : openLive(param);
}

bool RuntimeSession::openCapture(const DriverParam &param) {
  if (param.capturePath.empty()) return refuse("No capture file was named.");
  captureName_ = param.capturePath;
  auto capture =
      std::make_unique<CaptureSource>(param.capturePath, param.sensorPort, static_cast<FrameSourceListener &>(*this));
  CaptureSource &begun = *capture;
  frames_ = std::move(capture);
  begun.start();
  return true;
}

bool RuntimeSession::openLive(const DriverParam &param) {
  UdpSocket::Settings settings;
  settings.port = param.liveUdpPort;
  settings.bindAddress = textOf(param.bindAddress);
  settings.multicastGroup = textOf(param.multicastGroup);
  settings.receiveBufferBytes = param.receiveBufferBytes;
  live_ = true;
  captureName_ = "UDP port " + std::to_string(param.liveUdpPort);
  auto live = std::make_unique<LiveSource>(param.liveRingFrames, static_cast<FrameSourceListener &>(*this));
  LiveSource &begun = *live;
  frames_ = std::move(live);
  std::string error;
  return begun.start(settings, error) || refuse(error);
}

bool RuntimeSession::refuse(const std::string &reason) {
  SKARN_LOG(LogLevel::Error, "%s", reason.c_str());
  {
    const std::lock_guard lock(errorMutex_);
    initError_ = reason;
  }
  source_.clipLoading = false;
  failed_ = true;
  return false;
}

bool RuntimeSession::GetInitFinish(SvSdkInitFinish question) const {
  return question == SvSdkInitFinish::Ready ? ready_.load() : question == SvSdkInitFinish::Failed && failed_.load();
}

std::string RuntimeSession::InitError() const {
  const std::lock_guard lock(errorMutex_);
  return initError_;
}

void RuntimeSession::described(const StreamDescription &description, const PacketDecoder &decoder, int port) {
  description_ = description;
  port_ = port;
  store_.setChannels(description.channels);
  params_.write([&](FrameDecodeParam &param) {
    if (param.nbqRgbMode == 0) param.nbqRgbMode = description.rgbMode;
  });
  source_.rgbMode = description.rgbMode;
  source_.remakeWidth = std::max<int>(description.channels, 1);
  scene_ = std::make_unique<SceneDecoder>(SceneDecoder::Parts{source_, frame_, params_, store_, filters_}, decoder,
                                          description);
  scene_->prepareFrame();
}

void RuntimeSession::calibrationFound(const CalibrationBlob &blob) {
  // What the user has loaded stays. Corrections count by their table: the flag alone says only that none is needed.
  const bool taken = blob.kind == CalibrationKind::Corrections ? store_.snapshot()->corrections != nullptr
                                                               : store_.isLoaded(blob.kind);
  std::atomic<bool> &standsIn = standsIn_[static_cast<std::size_t>(blob.kind)];
  if ((taken && !standsIn) || store_.loadBytes(blob.kind, blob.bytes, captureName_) != 0) return;
  standsIn = false;
  switch (blob.kind) {
    case CalibrationKind::Corrections:
      source_.correctionExportPending = true;
      break;
    case CalibrationKind::Firetimes:
      source_.firetimesExportPending = true;
      break;
    case CalibrationKind::Dcf:
      source_.dcfExportPending = true;
      break;
    default:
      break;
  }
}

void RuntimeSession::framesGrew() {
  source_.beginSeconds = frames_->index().beginSeconds();
  source_.endSeconds = frames_->index().endSeconds();
  if (ready_) return;
  source_.clipActive = true;
  // A stream has no end to wait for.
  if (live_) source_.clipLoading = false;
  ready_ = true;
}

void RuntimeSession::failed(const std::string &reason) { refuse(reason); }

void RuntimeSession::finished() {
  source_.endSeconds = frames_->index().endSeconds();
  finished_ = true;
  source_.clipLoading = false;
}

std::string RuntimeSession::GetLidarType() const { return lidar() ? lidar()->type : std::string(); }
int RuntimeSession::GetLidarNum() const { return lidar() ? lidar()->lasers : 0; }
int RuntimeSession::GetChannelNum() const { return lidar() ? lidar()->channels : 0; }
int RuntimeSession::GetPcapPort() const { return lidar() ? port_ : 0; }

bool RuntimeSession::Iterate(int first, int count) {
  if (!ready_ || count <= 0) return false;
  const std::int64_t begin = std::max(first, frames_->oldest());
  const std::int64_t end = std::min<std::int64_t>(std::int64_t{first} + count, frames_->index().count());
  return begin < end && start(static_cast<int>(begin), static_cast<int>(end - begin));
}

bool RuntimeSession::Iterate(double begin, double end) {
  if (!ready_ || !(begin <= end)) return false;
  const FrameIndex &index = frames_->index();
  const int last = index.find(end);
  if (last < 0 || begin > index.endSeconds()) return false;
  // A window between two frame starts shows the frame that it lies in. One that is hardly longer than a frame, as a
  // cursor just behind a frame's start gives it, shows that frame alone and not the end of the one before with it.
  const int first =
      std::max({std::min(index.firstFrom(begin), last), last - framesInside(end - begin, last) + 1, frames_->oldest()});
  return first <= last && start(first, last - first + 1);
}

/// Whole frames that a window of `seconds` has room for, by the length of the frame before `last`; at least 1.
int RuntimeSession::framesInside(double seconds, int last) const {
  constexpr double roundUp = 0.25;  // frames are not equally long to the microsecond
  const double period = last > 0 ? GetFrameStartSeconds(last) - GetFrameStartSeconds(last - 1) : 0.0;
  if (period <= 0.0) return std::numeric_limits<int>::max() / 2;
  return static_cast<int>(std::clamp(std::floor(seconds / period + roundUp), 1.0, 1e6));
}

bool RuntimeSession::start(int first, int count) {
  asked_ = true;
  source_.frameReady = false;
  decoder_.post({first, count});
  // Whoever asked looks for the frame in steps of 5 ms: one that is there by the first look costs no step.
  decoder_.awaitIdle(promptLimit);
  return true;
}

void RuntimeSession::decodeFrames(const DecodeRequest &request, const std::function<bool()> &giveUp) {
  try {
    if (scene_->decode(*frames_, request.first, request.count, giveUp) || giveUp()) return;
    SKARN_LOG(LogLevel::Warning, "no frame of %d to %d can be read", request.first, request.first + request.count - 1);
  } catch (const std::exception &failure) {
    SKARN_LOG(LogLevel::Error, "frame %d cannot be decoded: %s", request.first, failure.what());
  }
  // Whoever waits for the frame is told that none comes: an empty one, which leaves the old picture as it is.
  const std::lock_guard lock(source_.frameLock);
  source_.pointCount = 0;
  source_.fastPathDone = false;
  source_.frameReady = true;
}

int RuntimeSession::FindFrameId(double seconds) const { return ready_ ? frames_->index().find(seconds) : -1; }
int RuntimeSession::GetFrameCount() const { return ready_ ? frames_->index().count() : 0; }

double RuntimeSession::GetFrameStartSeconds(int frame) const {
  const auto found = ready_ ? frames_->index().at(frame) : std::nullopt;
  constexpr double nsPerSecond = 1e9;
  return found ? static_cast<double>(found->startNs) / nsPerSecond : 0.0;
}

bool RuntimeSession::HasPreParser() const { return ready_; }
DecodedFrame *RuntimeSession::DecodeFrame() { return ready_ ? &frame_ : nullptr; }

void RuntimeSession::ApplyRemakeDefaultConfig() {
  const StreamDescription *known = lidar();
  if (known == nullptr) return;
  params_.write([&](FrameDecodeParam &param) {
    RemakeGrid &grid = param.remake;
    grid.azimuthCells = known->columns * known->echoes;
    grid.elevationCells = known->channels;
    grid.elevationMin = known->elevationMinDeg;
    grid.elevationMax = known->elevationMaxDeg;
    grid.elevationResolution =
        (grid.elevationMax - grid.elevationMin) / static_cast<float>(std::max(grid.elevationCells - 1, 1));
    grid.azimuthResolution = (grid.azimuthMax - grid.azimuthMin) / static_cast<float>(std::max(grid.azimuthCells, 1));
    grid.mergedFrames = std::max(grid.mergedFrames, 1);
  });
}

}  // namespace tarvo::lidar
