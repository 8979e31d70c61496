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
constexpr std::int32_t sequenceRestartDistance = 1'000'000;

/// Tells losses from disorder: a packet counts as lost once 64 later ones have come.
class SequenceWatch {
 public:
  /// Packets now known to be lost.
  std::uint32_t note(std::uint32_t sequence) {
    const auto ahead = static_cast<std::int32_t>(sequence - newest_);
    if (!started_ || ahead > sequenceRestartDistance || ahead < -sequenceRestartDistance) {
      const std::uint32_t lost = started_ ? outstanding() : 0;
      started_ = true;
      newest_ = sequence;
      seen_ = ~std::uint64_t{0};
      return lost;
    }
    if (ahead <= 0) {
      if (ahead > -64) seen_ |= std::uint64_t{1} << -ahead;
      return 0;
    }
    newest_ = sequence;
    if (ahead >= 64) {
      const std::uint32_t lost = outstanding() + static_cast<std::uint32_t>(ahead - 64);
      seen_ = 1;
      return lost;
    }
    const auto lost = static_cast<std::uint32_t>(std::popcount(~seen_ >> (64 - ahead)));
    seen_ = seen_ << ahead | 1;
    return lost;
  }
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
    where.lost = sequence_.note(header->sequence);
    where.frameStartNs = clampTime(header->frameTimeNs);
    where.timeNs = clampTime(header->frameTimeNs + header->timeOffsetNs);
    where.endsFrame = header->endsFrame();
    where.kind = orderOf(header->frame);
    takeBody(*header, wire::bodyOf(datagram.payload, *header), where);
    return where;
  }

  [[nodiscard]] const StreamDescription *description() const override {
    return description_ ? &*description_ : nullptr;
  }
  std::optional<CalibrationBlob> takeCalibration() override { return calibration_.next(); }
  unsigned takeRefusals() override { return std::exchange(calibration_.refusals, 0U); }
  std::uint32_t takeOutstanding() override { return sequence_.outstanding(); }

 private:
  static std::int64_t clampTime(std::uint64_t ns) {
    constexpr auto most = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    return static_cast<std::int64_t>(ns < most ? ns : most);
  }

  PacketPlace::Kind orderOf(std::uint32_t frame) {
    const auto ahead = frame_ ? static_cast<std::int32_t>(frame - *frame_) : 1;
    if (ahead > 0 || ahead < -restartDistance) {
      frame_ = frame;
      return PacketPlace::Kind::Next;
    }
    if (ahead == 0) return PacketPlace::Kind::Current;
    return ahead == -1 ? PacketPlace::Kind::Previous : PacketPlace::Kind::Late;
  }

  void takeBody(const wire::Header &header, std::span<const std::uint8_t> body, PacketPlace &where) {
    bool damaged = false;
    if (header.kind == wire::PacketKind::FrameDescriptor) {
      // The first description holds for the stream; a frame decodes by its own.
      auto told = description_ ? std::nullopt : readDescription(body);
      damaged = !description_ && !told;
      if (told) description_ = std::move(told);
    } else if (header.kind == wire::PacketKind::Calibration) {
      const auto run = wire::parseCalibration(body);
      damaged = !run;
      if (run) calibration_.take(*run);
    }
    // A damaged packet that opens a frame still opens it: its header holds.
    if (damaged && where.kind == PacketPlace::Kind::Current) where.kind = PacketPlace::Kind::Damaged;
  }

  std::optional<std::uint16_t> sensor_;
  std::optional<std::uint32_t> frame_;
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
