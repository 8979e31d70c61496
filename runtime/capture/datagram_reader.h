#pragma once

#include "runtime/capture/fragment_joiner.h"
#include "runtime/capture/record_cursor.h"

namespace tarvo::lidar {

/// The UDP datagrams of a capture from a record on, in the order of the file. One thread.
class DatagramReader {
 public:
  /// Arguments as for `RecordCursor`. `counting` off keeps a second reading of the same bytes out of the counts.
  DatagramReader(CaptureFile &file, CaptureCounters &counters, std::uint64_t offset, std::uint64_t limit,
                 std::size_t window = RecordCursor::indexWindow, bool counting = true)
      : counters_(counters), counting_(counting), cursor_(file, counters, offset, limit, window) {}

  /// The payload is valid until the next call. False at the end.
  bool next(UdpDatagram &datagram);

  /// Records seen so far, of whatever kind.
  [[nodiscard]] std::uint64_t records() const { return records_; }
  [[nodiscard]] std::uint64_t position() const { return cursor_.position(); }

 private:
  void count(InputFault fault, std::uint64_t where, std::uint64_t times = 1);

  CaptureCounters &counters_;
  bool counting_;
  RecordCursor cursor_;
  FragmentJoiner joiner_;
  std::uint64_t records_ = 0;
};

}  // namespace tarvo::lidar
