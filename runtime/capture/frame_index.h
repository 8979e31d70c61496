#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <limits>
#include <mutex>
#include <optional>
#include <vector>

namespace tarvo::lidar {

/// Where and when a frame lies in a capture.
struct IndexedFrame {
  std::uint64_t offset = 0;  ///< of the record with its first packet
  std::uint64_t length = 0;  ///< bytes from there to the end of the record with its last packet
  std::int64_t startNs = 0;  ///< Unix time
  std::uint32_t packets = 0;
};

/// The frames of a capture, by id from 0. One thread adds while any others read what is there so far.
/// Takes 16 bytes a frame and 24 for a group of up to 256 frames.
class FrameIndex {
 public:
  /// What a cursor loses on its way through doubles and whole microseconds; a frame counts as begun that much early.
  static constexpr std::int64_t timeToleranceNs = 2'000;

  /// A start before that of the frame in front counts as that one's, so that starts never fall.
  void append(const IndexedFrame &frame);
  /// Lengthens frame `id` up to file offset `end` by one packet that came late.
  void extend(int id, std::uint64_t end);
  /// Time of a packet; moves the end of the capture on.
  void noteTime(std::int64_t ns);

  [[nodiscard]] int count() const;
  [[nodiscard]] std::optional<IndexedFrame> at(int id) const;
  /// Frame that is running at `seconds` (Unix time); -1 before the first frame and for NaN, the last one after the end.
  [[nodiscard]] int find(double seconds) const;
  /// First frame that begins at `seconds` or later; count() for none.
  [[nodiscard]] int firstFrom(double seconds) const;
  /// Seconds of the first frame's start and of the last packet; -1 while there is no frame.
  [[nodiscard]] double beginSeconds() const;
  [[nodiscard]] double endSeconds() const;
  [[nodiscard]] std::size_t memoryBytes() const;

 private:
  static constexpr std::size_t groupFrames = 256;
  struct Entry {
    std::uint32_t offsetDelta;  // from the group's
    std::uint32_t startDelta;   // from the group's, in units of 100 ns
    std::uint32_t length;       // the largest value stands for more
    std::uint32_t packets;
  };
  struct Group {
    std::uint64_t offset;
    std::int64_t start;  // units of 100 ns since the epoch
    std::uint32_t firstFrame;
  };

  [[nodiscard]] const Group &groupOf(std::size_t id) const;
  [[nodiscard]] std::int64_t startOf(std::size_t id) const;
  [[nodiscard]] std::size_t begunBefore(std::int64_t unit) const;

  mutable std::mutex mutex_;   // guards every member below
  std::deque<Entry> entries_;  // grows without a second copy of itself
  std::vector<Group> groups_;
  std::int64_t lastStart_ = 0;
  std::int64_t endNs_ = std::numeric_limits<std::int64_t>::min();
};

}  // namespace tarvo::lidar
