#pragma once

#include <vector>

#include "runtime/decode/packet_decoder.h"
#include "runtime/decode/run_set.h"
#include "runtime/wire/point_layout.h"

namespace tarvo::lidar {

/// Decodes a frame of our own format.
class SkarnFrameDecoder final : public FrameDecoder {
 public:
  std::optional<FrameHead> prepare(const FramePackets &packets, const StreamDescription &known) override;
  void decodeColumns(const PointSettings &settings, unsigned firstColumn, unsigned endColumn,
                     SDKPointInfo *slots) const override;
  void decodeParts(DecodedParts &parts) override;

 private:
  struct PointPacket {
    const std::uint8_t *blocks;
    wire::PointsHead head;
  };
  struct SidePacket {
    wire::PacketKind kind;
    std::span<const std::uint8_t> body;
  };

  /// Whether the block's records lie inside the frame.
  [[nodiscard]] bool holds(const wire::BlockHead &block) const;
  [[nodiscard]] bool takes(const PointSettings &settings, const wire::BlockHead &block, unsigned firstColumn,
                           unsigned endColumn) const;
  void clearGaps(const PointSettings &settings, unsigned firstColumn, unsigned endColumn, SDKPointInfo *slots) const;
  bool takeSide(const SidePacket &packet, DecodedParts &parts);
  void takeStatus(const SidePacket &packet, DecodedParts &parts, bool &good);

  StreamDescription shape_;
  FrameHead head_;
  std::uint8_t returnMode_ = 0;
  unsigned damaged_ = 0;
  std::vector<PointPacket> points_;
  std::vector<SidePacket> sides_;
  std::array<std::uint8_t, DecodedParts::statusBytes> status_{};
  RunSet statusRuns_;
};

}  // namespace tarvo::lidar
