#include "runtime/decode/scene_decoder.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <string_view>
#include <utility>

#include "contracts/host/log.h"
#include "contracts/runtime/decoded_frame_resize.h"
#include "contracts/runtime/status_packet.h"

SKARN_LOG_SOURCE("runtime/decode");

namespace tarvo::lidar {

namespace {

using skarnvisor::LogLevel;

constexpr std::uint64_t inlinePoints = 8'000;  // below that a second thread costs more than it brings
constexpr std::size_t faultByteLimit = 1u << 20;
constexpr int fastPathMode = 1;
constexpr std::uint64_t aheadByteLimit = 16u << 20;
constexpr double secondsPerNs = 1e-9;

/// Types whose views choose the echo themselves, point by point, and need all of them.
constexpr std::array<std::string_view, 2> typesKeepingEchoes{"HU_V8", "HU_V11"};

std::uint64_t physicalMemory() {
  const long pages = ::sysconf(_SC_PHYS_PAGES);
  const long bytes = ::sysconf(_SC_PAGESIZE);
  constexpr std::uint64_t fallback = 8ULL << 30;
  return pages > 0 && bytes > 0 ? static_cast<std::uint64_t>(pages) * static_cast<std::uint64_t>(bytes) : fallback;
}

bool sameShape(const StreamDescription &a, const StreamDescription &b) {
  return a.columns == b.columns && a.channels == b.channels && a.echoes == b.echoes;
}

}  // namespace

SceneDecoder::SceneDecoder(Parts parts, const PacketDecoder &decoder, StreamDescription description)
    : source_(parts.source),
      frame_(parts.frame),
      params_(parts.params),
      store_(parts.calibration),
      filterControls_(parts.filters),
      description_(std::move(description)),
      keepsEchoes_(std::find(typesKeepingEchoes.begin(), typesKeepingEchoes.end(), description_.type) !=
                   typesKeepingEchoes.end()),
      decoder_(decoder.makeFrameDecoder()),
      workers_(DecodeWorkers::usefulParts()) {}

void SceneDecoder::prepareFrame() {
  const std::lock_guard lock(frame_.mutex);
  frame_.laserCount = description_.lasers;
  frame_.channelCount = description_.channels;
  makeRoom(description_, 1);
}

bool SceneDecoder::decode(FrameSource &from, int first, int count, const std::function<bool()> &stop) {
  const int fitting = affordableFrames(count);
  first += count - fitting;
  forward_ = first == lastId_ + 1;
  lastId_ = first + fitting - 1;
  PointLoan points(source_, frame_);
  DecodedParts parts;
  if (!decodePoints(from, first, fitting, points, parts, stop) || stop()) return false;
  publish(first, points, parts);
  // A request that came meanwhile waits for its own frames.
  if (!stop()) source_.frameReady = true;
  return true;
}

bool SceneDecoder::readPackets(FrameSource &from, int id, const std::function<bool()> &stop) {
  if (std::exchange(aheadId_, -1) == id) {
    std::swap(packets_, ahead_);
    return true;
  }
  packets_.clear();
  return from.readFrame(id, packets_, stop);
}

void SceneDecoder::readAhead(FrameSource &from) {
  const int next = lastId_ + 1;
  // The newest frames may still get a packet.
  constexpr int unsettledFrames = 2;
  if (!forward_ || next + unsettledFrames > from.index().count()) return;
  if (const auto frame = from.index().at(next); !frame || frame->length > aheadByteLimit) return;
  ahead_.clear();
  if (from.readFrame(next, ahead_, [] { return false; })) aheadId_ = next;
}

/// The newest frames of a run that half of the machine's memory holds.
int SceneDecoder::affordableFrames(int count) {
  static const std::uint64_t budget = physicalMemory() / 2;
  const std::uint64_t perFrame =
      std::uint64_t{description_.packetsPerFrame} * description_.pointsPerPacket * 2 * sizeof(SDKPointInfo);
  const auto most =
      static_cast<int>(std::clamp<std::uint64_t>(budget / std::max<std::uint64_t>(perFrame, 1), 1, 1'000'000));
  if (count > most && !std::exchange(memoryWarned_, true))
    SKARN_LOG(LogLevel::Warning, "%d frames do not fit the memory, the last %d are decoded", count, most);
  return std::min(count, most);
}

bool SceneDecoder::decodePoints(FrameSource &from, int first, int count, PointLoan &points, DecodedParts &parts,
                                const std::function<bool()> &stop) {
  use_ = params_.snapshot();
  calibration_ = store_.snapshot();
  refreshIntensityMap(*calibration_);
  filters_.select(filterControls_.snapshot(), use_);
  merged_ = 0;
  for (int id = first; id < first + count; ++id) {
    if (stop()) return false;
    if (!readPackets(from, id, stop)) continue;
    const auto head = decoder_->prepare(packets_, description_);
    if (!head) continue;
    if (merged_ == 0) {
      shape_ = *head->shape;
      points.take(static_cast<unsigned>(count) * shape_.framePoints());
    }
    addFrame(*head, points.data(), parts);
  }
  if (merged_ == 0) return false;
  if (parts.damagedPackets != 0) from.reportDamage(first, parts.damagedPackets);
  return true;
}

/// Room for `frames` frames in the decoded frame; what it has already is kept when it is enough. Caller holds its lock.
void SceneDecoder::makeRoom(const StreamDescription &shape, int frames) {
  const bool fits = frame_.packetsPerFrame == shape.packetsPerFrame &&
                    frame_.pointsPerPacket == shape.pointsPerPacket && frame_.storage != nullptr &&
                    frame_.packetCapacity >= std::uint64_t{shape.packetsPerFrame} * static_cast<unsigned>(frames);
  if (fits) return;
  frame_.packetsPerFrame = shape.packetsPerFrame;
  frame_.pointsPerPacket = shape.pointsPerPacket;
  if (resizeDecodedFrameLocked(frame_, frames)) return;
  if (!std::exchange(memoryWarned_, true)) SKARN_LOG(LogLevel::Error, "no memory for %d frames", frames);
  (void)resizeDecodedFrameLocked(frame_, 1);
}

/// Adds one prepared frame behind those merged already.
void SceneDecoder::addFrame(const FrameHead &head, SDKPointInfo *points, DecodedParts &parts) {
  if (!sameShape(*head.shape, shape_)) {
    ++parts.damagedPackets;
    return;
  }
  ChannelTableInput input;
  input.calibration = calibration_.get();
  input.store = &store_;
  input.useCorrections = store_.isLoaded(CalibrationKind::Corrections);
  input.firetimes = use_.firetimeCorrection;
  input.distanceOffsets = use_.dcfCorrection || use_.distanceCorrection;
  channels_.build(*head.shape, head.number, input);
  PointSettings settings;
  settings.channels = &channels_;
  settings.echo = keepsEchoes_ ? std::uint8_t{0} : use_.selectedEcho;
  settings.intensityMap = use_.intensityMapping && !intensityMap_.empty() ? &intensityMap_ : nullptr;
  SDKPointInfo *slots = points + static_cast<unsigned>(merged_) * shape_.framePoints();
  share(shape_.framePoints(), [&](unsigned part, unsigned partCount) {
    const unsigned begin = shape_.columns * part / partCount;
    const unsigned end = shape_.columns * (part + 1) / partCount;
    if (begin < end) decoder_->decodeColumns(settings, begin, end, slots);
  });
  if (!filters_.isEmpty()) filterFrame(slots);
  decoder_->decodeParts(parts);
  ++merged_;
}

void SceneDecoder::filterFrame(SDKPointInfo *slots) {
  const FrameGrid grid{.points = slots,
                       .columns = shape_.columns,
                       .echoes = shape_.echoes,
                       .channels = shape_.channels,
                       .elevationMinDeg = shape_.elevationMinDeg,
                       .elevationMaxDeg = shape_.elevationMaxDeg};
  filters_.apply(grid, [this](int columns, const std::function<void(int, int)> &work) {
    share(shape_.framePoints(), [&](unsigned part, unsigned partCount) {
      const auto from = [&](unsigned p) {
        return static_cast<int>(static_cast<std::uint64_t>(columns) * p / partCount);
      };
      if (from(part) < from(part + 1)) work(from(part), from(part + 1));
    });
  });
}

/// Runs `work` for every part, each on a thread, or in one piece when there is little to do.
void SceneDecoder::share(std::uint64_t points, const std::function<void(unsigned, unsigned)> &work) {
  if (points < inlinePoints)
    work(0, 1);
  else
    workers_.run([&](unsigned part) { work(part, workers_.parts()); });
}

/// Everything of the decoded frame beside its points. Caller holds its lock.
void SceneDecoder::finishFrame(int first, DecodedParts &parts) {
  makeRoom(shape_, merged_);
  frame_.pointCount = static_cast<std::uint32_t>(static_cast<unsigned>(merged_) * shape_.framePoints());
  frame_.packetCount = static_cast<std::uint32_t>(merged_) * shape_.packetsPerFrame;
  frame_.framesMerged = static_cast<std::uint32_t>(merged_);
  frame_.firstFrameId = first;
  frame_.sequence = static_cast<std::uint64_t>(first + merged_ - 1);
  frame_.selectedEcho = use_.selectedEcho;
  frame_.returnMode = parts.returnMode;
  frame_.laserCount = shape_.lasers;
  frame_.channelCount = shape_.channels;
  frame_.motorSpeed = parts.motorSpeedRpm;
  frame_.timestampSeconds = static_cast<double>(parts.frameStartNs) * secondsPerNs;
  frame_.frameSeconds = frame_.timestampSeconds;
  // The user's choice of picture counts for lidars that have more than one.
  frame_.rgbMode = description_.rgbMode != 0 ? use_.nbqRgbMode : 0;
  frame_.popoutRefresh = frame_.smoothingRefresh = 0;
  if (parts.status) frame_.deviceStatus = *parts.status;
  if (parts.motion) {
    frame_.vehicleSpeed = parts.motion->speedMetresPerS;
    frame_.vehicleAzimuth = parts.motion->azimuthRad;
    frame_.vehicleElevation = parts.motion->elevationRad;
  }
  if (parts.grid) {
    frame_.gridRows = parts.grid->rows;
    frame_.gridColumns = parts.grid->columns;
    frame_.dirtyValues = std::move(parts.grid->dirt);
  }
  CameraPicture picture = parts.picture ? std::move(*parts.picture) : CameraPicture{};
  frame_.overlayColumns = picture.columns;
  frame_.overlayRows = picture.rows;
  frame_.overlayPoints = std::move(picture.pixels);
}

/// Hands the decoded frame to the source.
void SceneDecoder::publish(int first, PointLoan &points, DecodedParts &parts) {
  const std::lock_guard sourceLock(source_.frameLock);
  {
    const std::lock_guard frameLock(frame_.mutex);
    finishFrame(first, parts);
    points.handOver(frame_.pointCount);
    source_.overlayPoints = frame_.overlayPoints;
    source_.overlayColumns = frame_.overlayColumns;
    source_.overlayRows = frame_.overlayRows;
    source_.rgbMode = frame_.rgbMode;
    source_.frameTimestamp = frame_.timestampSeconds;
    source_.pointCount = static_cast<std::int32_t>(frame_.pointCount);
  }
  source_.laserPointCount = parts.laserPointCount;
  // Points come column by column, so a row of the remake is one column of the lidar.
  source_.remakeWidth = std::max<int>(shape_.channels, 1);
  source_.mergedFrames = merged_;
  source_.imuSamples = std::move(parts.imu);
  // The views of long records do not ask for them; a parser drops what no view reads.
  if (use_.faultPackets || parts.faultStride == longStatusPacketBytes) publishFaults(parts);
  source_.fastPathDone =
      source_.tryFillVertices && source_.rgbMode == fastPathMode &&
      source_.tryFillVertices(source_.points.data(), static_cast<unsigned>(source_.points.size()), fastPathMode);
}

void SceneDecoder::publishFaults(const DecodedParts &parts) {
  const std::lock_guard lock(source_.statusMutex);
  auto &bytes = source_.statusPacketBytes;
  const auto stride = static_cast<std::int32_t>(parts.faultStride);
  // A count of 0 says that the parser has read what was there.
  if (source_.statusPacketCount == 0 || (stride != 0 && source_.statusPacketStride != stride)) bytes.clear();
  if (stride == 0) return;
  if (bytes.size() + parts.faults.size() > faultByteLimit) {
    if (!std::exchange(faultsWarned_, true))
      SKARN_LOG(LogLevel::Warning, "fault packets that came behind the first %zu bytes of them were left out",
                faultByteLimit);
    return;
  }
  bytes.insert(bytes.end(), parts.faults.begin(), parts.faults.end());
  source_.statusPacketStride = stride;
  source_.statusPacketCount = static_cast<std::int32_t>(bytes.size()) / stride;
  source_.statusPackets = bytes.data();
}

/// Straight lines between the nodes of the mapping; outside of them its end values.
void SceneDecoder::refreshIntensityMap(const CalibrationSnapshot &calibration) {
  if (intensityMapGeneration_ == calibration.generation) return;
  intensityMapGeneration_ = calibration.generation;
  intensityMap_.clear();
  const NonlinearTable *table = calibration.nonlinear.get();
  if (table == nullptr || table->inputs.empty() || table->inputs.size() != table->outputs.size()) return;
  intensityMap_.resize(65'536);
  std::size_t node = 0;
  for (std::uint32_t raw = 0; raw < intensityMap_.size(); ++raw) {
    while (node + 1 < table->inputs.size() && table->inputs[node + 1] <= raw) ++node;
    const bool inside = raw >= table->inputs[node] && node + 1 < table->inputs.size();
    const double from = table->outputs[node];
    const double along =
        inside ? double(raw - table->inputs[node]) / (table->inputs[node + 1] - table->inputs[node]) : 0.0;
    intensityMap_[raw] =
        static_cast<std::uint16_t>(std::lround(from + (inside ? (table->outputs[node + 1] - from) * along : 0.0)));
  }
}

}  // namespace tarvo::lidar
