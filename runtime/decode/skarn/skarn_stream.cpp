#include <algorithm>
#include <array>
#include <bit>
#include <deque>
#include <limits>
#include <utility>

#include "runtime/decode/decoder_registry.h"
#include "runtime/decode/run_set.h"
#include "runtime/decode/skarn/skarn_description.h"
#include "runtime/decode/skarn/skarn_frame.h"
#include "runtime/wire/blob_bodies.h"
#include "runtime/wire/crc32.h"

namespace tarvo::lidar {

namespace {

/// A frame number that far behind the open frame means that the sensor began anew.
constexpr std::int32_t restartDistance = 16;
constexpr std::size_t earlyLimit = 64;
constexpr std::int32_t sequenceRestartDistance = 1'000'000;

/// Tells losses from disorder: a packet counts as lost once 64 later ones have come.
class SequenceWatch {
 public:
  /// Writes to `where` what the number says: packets now known to be lost, disorder, a repeat.
  void note(std::uint32_t sequence, PacketPlace &where) {
    const auto ahead = static_cast<std::int32_t>(sequence - newest_);
    if (!started_ || ahead > sequenceRestartDistance || ahead < -sequenceRestartDistance) {
      where.lost = restart();
      started_ = true;
      newest_ = sequence;
      return;
    }
    if (ahead <= 0) {
      const std::uint64_t bit = ahead > -64 ? std::uint64_t{1} << -ahead : 0;
      where.repeated = (seen_ & bit) != 0;
      where.disordered = !where.repeated;
      seen_ |= bit;
      return;
    }
    newest_ = sequence;
    if (ahead >= 64) {
      where.lost = outstanding() + static_cast<std::uint32_t>(ahead - 64);
      seen_ = 1;
      return;
    }
    where.lost = static_cast<std::uint32_t>(std::popcount(~seen_ >> (64 - ahead)));
    seen_ = seen_ << ahead | 1;
  }
  /// The next number is the first of a new count. Gives the packets that are lost from the old one.
  std::uint32_t restart() {
    const std::uint32_t lost = started_ ? outstanding() : 0;
    started_ = false;
    seen_ = ~std::uint64_t{0};
    return lost;
  }
  /// Whether a packet lies close behind the newest one.
  [[nodiscard]] bool follows(std::uint32_t sequence) const { return started_ && sequence - newest_ - 1 < 64; }
  [[nodiscard]] std::uint32_t outstanding() const { return static_cast<std::uint32_t>(std::popcount(~seen_)); }

 private:
  bool started_ = false;
  std::uint32_t newest_ = 0;
  std::uint64_t seen_ = ~std::uint64_t{0};  // bit n: the packet n before the newest has come
};

/// Joins the calibration files that a stream carries, each kind once.
class CalibrationJoiner {
 public:
  void take(const wire::CalibrationRun &run) {
    const auto kind = static_cast<std::size_t>(run.kind);
    if (done_[kind] || run.part.total == 0) return;
    Open &open = open_[kind];
    if (open.crc != run.crc || open.bytes.size() != run.part.total) {
      open.crc = run.crc;
      open.bytes.assign(run.part.total, 0);
      open.runs.clear();
    }
    std::copy(run.part.bytes.begin(), run.part.bytes.end(), open.bytes.begin() + run.part.offset);
    open.runs.add(run.part.offset, run.part.offset + static_cast<std::uint32_t>(run.part.bytes.size()));
    if (!open.runs.covers(run.part.total)) return;
    if (wire::crc32(open.bytes) == run.crc) {
      ready_.push_back({run.kind, std::move(open.bytes)});
      done_[kind] = true;
    } else {
      ++refusals;
    }
    open = {};
  }
  [[nodiscard]] bool awaits(wire::CalibrationKind kind) const { return !done_[static_cast<std::size_t>(kind)]; }
  std::optional<CalibrationBlob> next() {
    if (ready_.empty()) return std::nullopt;
    CalibrationBlob blob = std::move(ready_.front());
    ready_.pop_front();
    return blob;
  }

  unsigned refusals = 0;

 private:
  struct Open {
    std::uint32_t crc = 0;
    std::vector<std::uint8_t> bytes;
    RunSet runs;
  };
  std::array<Open, wire::calibrationKinds> open_;
  std::array<bool, wire::calibrationKinds> done_{};
  std::deque<CalibrationBlob> ready_;
};

class SkarnWalker final : public StreamWalker {
 public:
  PacketPlace place(const UdpDatagram &datagram) override {
    PacketPlace where;
    const auto header = wire::parseHeader(datagram.payload);
    if (!header) {
      where.kind = PacketPlace::Kind::Damaged;
      return where;
    }
    if (!sensor_) sensor_ = header->sensorId;
    if (*sensor_ != header->sensorId) return where;
    where.frameStartNs = clampTime(header->frameTimeNs);
    where.timeNs = clampTime(header->frameTimeNs + header->timeOffsetNs);
    // A file that was cut from another one begins with calibration from elsewhere in it.
    if (header->kind == wire::PacketKind::Calibration && !frame_) {
      where.kind = PacketPlace::Kind::Setup;
      if (early_.size() < earlyLimit) early_.push_back(header->sequence);
    } else {
      where.endsFrame = header->endsFrame();
      where.kind = orderOf(header->frame, where.frameStartNs);
      sequence_.note(header->sequence, where);
      noteEarly();
    }
    takeBody(*header, wire::bodyOf(datagram.payload, *header), where);
    return where;
  }

  [[nodiscard]] const StreamDescription *description() const override {
    return description_ ? &*description_ : nullptr;
  }
  std::optional<CalibrationBlob> takeCalibration() override { return calibration_.next(); }
  unsigned takeRefusals() override { return std::exchange(calibration_.refusals, 0U); }
  void skip() override { skipped_ = true; }
  std::uint32_t takeOutstanding() override { return sequence_.outstanding(); }

 private:
  static std::int64_t clampTime(std::uint64_t ns) {
    constexpr auto most = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    return static_cast<std::int64_t>(ns < most ? ns : most);
  }

  PacketPlace::Kind orderOf(std::uint32_t frame, std::int64_t startNs) {
    const auto ahead = frame_ ? static_cast<std::int32_t>(frame - *frame_) : 1;
    // An old or equal number with a later start is a sensor that began anew.
    const bool anew = ahead < -restartDistance || (ahead <= 0 && startNs > frameStartNs_);
    if (anew || std::exchange(skipped_, false)) (void)sequence_.restart();
    if (ahead > 0 || anew) {
      frame_ = frame;
      frameStartNs_ = startNs;
      return PacketPlace::Kind::Next;
    }
    if (ahead == 0) return PacketPlace::Kind::Current;
    return ahead == -1 ? PacketPlace::Kind::Previous : PacketPlace::Kind::Late;
  }

  /// Of the calibration in front of the first frame, what merely overtook its neighbours is not to be missed.
  void noteEarly() {
    PacketPlace unused;
    for (const std::uint32_t sequence : std::exchange(early_, {}))
      if (sequence_.follows(sequence)) sequence_.note(sequence, unused);
  }

  void takeBody(const wire::Header &header, std::span<const std::uint8_t> body, PacketPlace &where) {
    bool damaged = false;
    if (header.kind == wire::PacketKind::FrameDescriptor) {
      damaged = !takeDescription(body, where);
    } else if (header.kind == wire::PacketKind::Calibration) {
      const auto run = wire::parseCalibration(body);
      damaged = !run;
      if (run) {
        where.setup = calibration_.awaits(run->kind);
        calibration_.take(*run);
      }
    }
    // A damaged packet that opens a frame still opens it: its header holds.
    const bool opens = where.kind == PacketPlace::Kind::Next;
    if (damaged && !opens) where.kind = PacketPlace::Kind::Damaged;
  }

  /// The first description holds for the stream; a frame decodes by its own. False when it cannot be read.
  bool takeDescription(std::span<const std::uint8_t> body, PacketPlace &where) {
    if (std::equal(body.begin(), body.end(), lastDescription_.begin(), lastDescription_.end())) return true;
    auto told = readDescription(body);
    if (!told) return false;
    const Shape shape{told->columns, told->channels, told->echoes};
    where.shapeChanged = !lastDescription_.empty() && shape != shape_;
    shape_ = shape;
    lastDescription_.assign(body.begin(), body.end());
    if (!description_) description_ = std::move(told);
    return true;
  }

  using Shape = std::array<unsigned, 3>;

  std::optional<std::uint16_t> sensor_;
  std::optional<std::uint32_t> frame_;  // the open one
  std::int64_t frameStartNs_ = 0;
  bool skipped_ = false;
  std::vector<std::uint32_t> early_;  // sequence numbers
  std::vector<std::uint8_t> lastDescription_;
  Shape shape_{};
  std::optional<StreamDescription> description_;
  SequenceWatch sequence_;
  CalibrationJoiner calibration_;
};

class SkarnDecoder final : public PacketDecoder {
 public:
  [[nodiscard]] std::string_view name() const override { return "skarn"; }
  [[nodiscard]] bool recognises(const UdpDatagram &datagram) const override {
    return wire::parseHeader(datagram.payload).has_value();
  }
  [[nodiscard]] std::optional<std::uint64_t> frameKey(const UdpDatagram &datagram) const override {
    const auto header = wire::parseHeader(datagram.payload);
    if (!header) return std::nullopt;
    return std::uint64_t{header->sensorId} << 32 | header->frame;
  }
  [[nodiscard]] std::unique_ptr<StreamWalker> makeWalker() const override { return std::make_unique<SkarnWalker>(); }
  [[nodiscard]] std::unique_ptr<FrameDecoder> makeFrameDecoder() const override {
    return std::make_unique<SkarnFrameDecoder>();
  }
};

}  // namespace

const PacketDecoder &skarnDecoder() {
  static const SkarnDecoder decoder;
  return decoder;
}

}  // namespace tarvo::lidar
