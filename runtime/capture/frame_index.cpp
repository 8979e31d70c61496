#include "runtime/capture/frame_index.h"

#include <algorithm>
#include <cmath>

namespace tarvo::lidar {

namespace {

constexpr std::int64_t unitNs = 100;
constexpr double unitsPerSecond = 1e7;
constexpr double nsPerSecond = 1e9;
constexpr std::uint64_t deltaLimit = std::numeric_limits<std::uint32_t>::max();

std::int64_t floorUnits(std::int64_t ns) { return ns / unitNs - (ns % unitNs < 0 ? 1 : 0); }

/// Seconds to units; values beyond the range give its ends.
std::int64_t toUnits(double seconds) {
  constexpr double most = 9.0e18;
  return static_cast<std::int64_t>(std::clamp(std::round(seconds * unitsPerSecond), -most, most));
}

}  // namespace

void FrameIndex::append(const IndexedFrame &frame) {
  const std::lock_guard lock(mutex_);
  const std::int64_t start =
      entries_.empty() ? floorUnits(frame.startNs) : std::max(floorUnits(frame.startNs), lastStart_);
  lastStart_ = start;
  const bool fits = !groups_.empty() && entries_.size() - groups_.back().firstFrame < groupFrames &&
                    frame.offset >= groups_.back().offset && frame.offset - groups_.back().offset <= deltaLimit &&
                    static_cast<std::uint64_t>(start - groups_.back().start) <= deltaLimit;
  if (!fits) groups_.push_back({frame.offset, start, static_cast<std::uint32_t>(entries_.size())});
  const Group &group = groups_.back();
  entries_.push_back({static_cast<std::uint32_t>(frame.offset - group.offset),
                      static_cast<std::uint32_t>(start - group.start),
                      static_cast<std::uint32_t>(std::min(frame.length, deltaLimit)), frame.packets});
  endNs_ = std::max(endNs_, frame.startNs);
}

void FrameIndex::extend(int id, std::uint64_t end) {
  const std::lock_guard lock(mutex_);
  if (id < 0 || static_cast<std::size_t>(id) >= entries_.size()) return;
  const auto index = static_cast<std::size_t>(id);
  const std::uint64_t offset = groupOf(index).offset + entries_[index].offsetDelta;
  const std::uint64_t length = std::min(end > offset ? end - offset : 0, deltaLimit);
  entries_[index].length = std::max(entries_[index].length, static_cast<std::uint32_t>(length));
  ++entries_[index].packets;
}

void FrameIndex::noteTime(std::int64_t ns) {
  const std::lock_guard lock(mutex_);
  endNs_ = std::max(endNs_, ns);
}

int FrameIndex::count() const {
  const std::lock_guard lock(mutex_);
  return static_cast<int>(entries_.size());
}

std::optional<IndexedFrame> FrameIndex::at(int id) const {
  const std::lock_guard lock(mutex_);
  if (id < 0 || static_cast<std::size_t>(id) >= entries_.size()) return std::nullopt;
  const auto index = static_cast<std::size_t>(id);
  const Entry &entry = entries_[index];
  return IndexedFrame{groupOf(index).offset + entry.offsetDelta, entry.length, startOf(index) * unitNs, entry.packets};
}

int FrameIndex::find(double seconds) const {
  if (std::isnan(seconds)) return -1;
  const std::lock_guard lock(mutex_);
  return static_cast<int>(begunBefore(toUnits(seconds) + timeToleranceNs / unitNs + 1)) - 1;
}

int FrameIndex::firstFrom(double seconds) const {
  const std::lock_guard lock(mutex_);
  if (std::isnan(seconds)) return static_cast<int>(entries_.size());
  return static_cast<int>(begunBefore(toUnits(seconds) - timeToleranceNs / unitNs));
}

double FrameIndex::beginSeconds() const {
  const std::lock_guard lock(mutex_);
  return entries_.empty() ? -1.0 : static_cast<double>(startOf(0)) / unitsPerSecond;
}

double FrameIndex::endSeconds() const {
  const std::lock_guard lock(mutex_);
  return entries_.empty() ? -1.0 : static_cast<double>(endNs_) / nsPerSecond;
}

std::size_t FrameIndex::memoryBytes() const {
  const std::lock_guard lock(mutex_);
  return entries_.size() * sizeof(Entry) + groups_.capacity() * sizeof(Group);
}

const FrameIndex::Group &FrameIndex::groupOf(std::size_t id) const {
  const auto after = std::upper_bound(groups_.begin(), groups_.end(), id,
                                      [](std::size_t value, const Group &g) { return value < g.firstFrame; });
  return *std::prev(after);
}

std::int64_t FrameIndex::startOf(std::size_t id) const { return groupOf(id).start + entries_[id].startDelta; }

/// Number of frames that begin before `unit`.
std::size_t FrameIndex::begunBefore(std::int64_t unit) const {
  const auto after =
      std::partition_point(groups_.begin(), groups_.end(), [&](const Group &g) { return g.start < unit; });
  if (after == groups_.begin()) return 0;
  const Group &group = *std::prev(after);
  const auto last = after == groups_.end() ? entries_.size() : std::size_t{after->firstFrame};
  const auto first = entries_.begin() + group.firstFrame;
  const auto end = std::partition_point(first, entries_.begin() + static_cast<std::ptrdiff_t>(last),
                                        [&](const Entry &e) { return group.start + e.startDelta < unit; });
  return static_cast<std::size_t>(end - entries_.begin());
}

}  // namespace tarvo::lidar
