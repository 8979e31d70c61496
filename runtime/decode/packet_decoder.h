#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "runtime/capture/udp_dissector.h"
#include "runtime/decode/decoded_parts.h"
#include "runtime/decode/frame_packets.h"
#include "runtime/wire/blob_bodies.h"

namespace tarvo::lidar {

/// What a stream says about its lidar.
struct StreamDescription {
  std::string type;  ///< lidar type string
  std::uint16_t lasers = 0;
  std::uint16_t channels = 0;
  std::uint16_t columns = 0;  ///< firing positions of a frame
  std::uint8_t echoes = 1;
  std::uint16_t packetsPerFrame = 0;
  std::uint32_t pointsPerPacket = 0;
  std::int32_t rgbMode = 0;
  double motorSpeedRpm = 0;
  float elevationMinDeg = 0;
  float elevationMaxDeg = 0;
  std::vector<float> nominalElevationsDeg;  ///< one a channel, for use while there are no corrections

  /// Slots of one frame: columns x echoes x channels, in that order, channels running fastest.
  [[nodiscard]] std::uint64_t framePoints() const { return std::uint64_t{columns} * echoes * channels; }
};

/// What one packet means for the order of frames.
struct PacketPlace {
  enum class Kind {
    Foreign,  ///< not of this stream
    Damaged,
    Current,   ///< belongs to the frame that is open
    Next,      ///< begins a frame
    Previous,  ///< belongs to the frame before the open one
    Late,      ///< belongs to a frame further back
    Setup,     ///< describes the lidar, and belongs to no frame that can be shown
  };
  Kind kind = Kind::Foreign;
  bool endsFrame = false;         ///< nothing but stragglers of the frame follows
  std::int64_t frameStartNs = 0;  ///< Unix time
  std::int64_t timeNs = 0;        ///< Unix time of the packet, the sensor's clock
  std::uint32_t lost = 0;         ///< packets now known to be missing
  bool disordered = false;        ///< came behind a later packet
  bool repeated = false;          ///< has come before
  bool setup = false;             ///< carries what frames of other times need too: calibration that is not whole yet
  bool shapeChanged = false;      ///< the frames are of another size from here on
};

/// A calibration file that a stream carried.
struct CalibrationBlob {
  wire::CalibrationKind kind{};
  std::vector<std::uint8_t> bytes;
};

/// Follows one stream packet by packet, in the order of the file, on the index thread: cuts it into frames and collects
/// what describes the lidar.
class StreamWalker {
 public:
  virtual ~StreamWalker() = default;
  virtual PacketPlace place(const UdpDatagram &datagram) = 0;
  /// Null until a packet told.
  [[nodiscard]] virtual const StreamDescription *description() const = 0;
  /// The next calibration file that is complete; none most of the time. A file that comes again is not given again.
  virtual std::optional<CalibrationBlob> takeCalibration() = 0;
  /// Calibration files that came whole and wrong, since the last call.
  virtual unsigned takeRefusals() { return 0; }
  /// Packets were left out on purpose in front of the next one: they are not lost.
  virtual void skip() {}
  /// Packets that were still awaited when the stream ended.
  virtual std::uint32_t takeOutstanding() { return 0; }
};

/// What the decode must know of a frame before its points.
struct FrameHead {
  const StreamDescription *shape = nullptr;  ///< lives until the next `prepare`
  std::uint32_t number = 0;                  ///< the sensor's own
  std::int64_t startNs = 0;                  ///< Unix time
};

/// Decodes the packets of one frame, on the decoder thread. Keeps what must outlive a frame (the last description).
class FrameDecoder {
 public:
  virtual ~FrameDecoder() = default;
  /// First step: what the frame's own packets say about its shape, `known` being the stream's description. None: the
  /// frame cannot be decoded. `packets` stays as it is until the last step.
  virtual std::optional<FrameHead> prepare(const FramePackets &packets, const StreamDescription &known) = 0;
  /// Second step: writes every slot of columns [firstColumn, endColumn) in `slots`, the whole frame's, empty ones with
  /// channel 0. Calls for separate ranges run at the same time.
  virtual void decodeColumns(const PointSettings &settings, unsigned firstColumn, unsigned endColumn,
                             SDKPointInfo *slots) const = 0;
  /// Third step: everything beside the points, and the number of damaged packets.
  virtual void decodeParts(DecodedParts &parts) = 0;
};

/// The seam for packet formats: a format is one of these and one row of `decoderRegistry`. Immutable; any thread.
class PacketDecoder {
 public:
  virtual ~PacketDecoder() = default;
  [[nodiscard]] virtual std::string_view name() const = 0;
  /// Is this packet of your format?
  [[nodiscard]] virtual bool recognises(const UdpDatagram &datagram) const = 0;
  /// Tells the packets of one frame from those that lie between them in the file. A format without frame numbers gives
  /// the same key to all packets of its stream; none: not of this format.
  [[nodiscard]] virtual std::optional<std::uint64_t> frameKey(const UdpDatagram &datagram) const = 0;
  [[nodiscard]] virtual std::unique_ptr<StreamWalker> makeWalker() const = 0;
  [[nodiscard]] virtual std::unique_ptr<FrameDecoder> makeFrameDecoder() const = 0;
};

}  // namespace tarvo::lidar
