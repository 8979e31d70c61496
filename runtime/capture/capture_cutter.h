#pragma once

#include <string>
#include <vector>

#include "runtime/capture/capture_file.h"
#include "runtime/capture/cut_watch.h"
#include "runtime/capture/frame_index.h"
#include "runtime/decode/packet_decoder.h"

namespace tarvo::lidar {

/// Where a record lies in a capture.
struct RecordPlace {
  std::uint64_t offset = 0;
  std::uint64_t end = 0;
};

class ReplacingFile;

/// Writes a run of frames of a capture to a file of its own: everything that lies between the run's first and last
/// packet, other traffic too, but for packets of the frames behind the run; and the packets from elsewhere that
/// describe the lidar. Packets and stamps stay as they are, byte for byte. A pcap file gives one of the same kind; a
/// pcapng file gives a nanosecond pcap, or a pcapng when its packets are of several link types.
class CaptureCutter {
 public:
  /// `setup` are the records that frames of any time need, in the order of the file.
  CaptureCutter(CaptureFile &file, const PacketDecoder &decoder, int port, std::vector<RecordPlace> setup,
                CutWatch &watch)
      : file_(file), decoder_(decoder), port_(port), setup_(std::move(setup)), watch_(watch) {}

  /// Frames `first` to `last` of `index`, which has them. False, with one sentence in `error`, or when the watch gave
  /// it up; a file that was at `path` (local 8-bit) is then as it was.
  bool cut(const std::string &path, const FrameIndex &index, int first, int last, std::string &error);

 private:
  using Ranges = std::vector<RecordPlace>;

  [[nodiscard]] Ranges rangesOf(const FrameIndex &index, int first, int last);
  [[nodiscard]] std::vector<RecordPlace> recordsBehind(const FrameIndex &index, int first, int last, std::uint64_t end);
  [[nodiscard]] std::optional<std::uint64_t> keyAt(const IndexedFrame &frame);
  bool copyRange(ReplacingFile &to, const RecordPlace &range);
  bool copyClassic(ReplacingFile &to, const Ranges &ranges);
  bool convert(ReplacingFile &to, const Ranges &ranges, bool &mixed);
  bool copyBlocks(ReplacingFile &to, const Ranges &ranges);
  bool copyHeadBlock(ReplacingFile &to, std::uint64_t offset, bool swapped, bool section);

  CaptureFile &file_;
  const PacketDecoder &decoder_;
  const int port_;
  const std::vector<RecordPlace> setup_;
  CutWatch &watch_;
};

}  // namespace tarvo::lidar
