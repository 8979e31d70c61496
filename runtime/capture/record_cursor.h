#pragma once

#include "runtime/capture/capture_counters.h"
#include "runtime/capture/capture_file.h"

namespace tarvo::lidar {

/// One captured link-layer frame.
struct CaptureRecord {
  std::uint64_t offset = 0;  ///< of the record or block in the file: where a cursor may start again
  std::uint64_t end = 0;     ///< offset of what follows
  std::int64_t timeNs = 0;   ///< Unix time of the capture stamp
  std::uint32_t linkType = 0;
  std::uint32_t originalLength = 0;     ///< of the packet on the wire; what was captured may be shorter
  std::span<const std::uint8_t> bytes;  ///< valid until the next call of `next`
};

/// Walks the records of a capture from a record's offset on. Reads ahead in windows; one thread a cursor.
class RecordCursor {
 public:
  static constexpr std::size_t indexWindow = 4u << 20;

  /// Begins at `offset`: the file's first record, or the offset of a record that a cursor gave before. Records that
  /// begin at `limit` or behind it are left out. `window` is the read-ahead in bytes.
  RecordCursor(CaptureFile &file, CaptureCounters &counters, std::uint64_t offset, std::uint64_t limit,
               std::size_t window = indexWindow);

  /// False at the end, or where the file can be read no further (counted).
  bool next(CaptureRecord &record);

  [[nodiscard]] std::uint64_t position() const { return position_; }

 private:
  bool nextClassic(CaptureRecord &record);
  bool nextBlock(CaptureRecord &record);
  bool readBlockHead(std::uint32_t &type, std::uint32_t &length);
  void takeSection();
  void takeInterface(std::uint32_t length);
  bool takePacket(std::uint32_t type, std::uint32_t length, CaptureRecord &record);

  bool ensure(std::size_t count);
  bool stop(InputFault fault);
  [[nodiscard]] std::uint32_t word(std::size_t at) const;
  [[nodiscard]] std::uint16_t half(std::size_t at) const;
  [[nodiscard]] const std::uint8_t *here() const { return window_.data() + (position_ - windowOffset_); }

  CaptureFile &file_;
  CaptureCounters &counters_;
  std::uint64_t position_;
  std::uint64_t limit_;
  std::size_t windowSize_;
  CaptureSection section_;
  std::vector<std::uint8_t> window_;
  std::uint64_t windowOffset_ = 0;
  std::size_t windowUsed_ = 0;
  bool stopped_ = false;
};

}  // namespace tarvo::lidar
