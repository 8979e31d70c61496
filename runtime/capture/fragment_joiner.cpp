#include "runtime/capture/fragment_joiner.h"

#include <algorithm>
#include <utility>

namespace tarvo::lidar {

std::list<FragmentJoiner::Open>::iterator FragmentJoiner::find(const IpFragment &fragment, std::uint64_t recordOffset) {
  const auto known = std::find_if(open_.begin(), open_.end(), [&](const Open &o) {
    return o.identification == fragment.identification && o.sourceAddress == fragment.sourceAddress &&
           o.destinationAddress == fragment.destinationAddress;
  });
  if (known != open_.end()) return known;
  if (open_.size() >= openLimit) {
    open_.pop_front();
    ++abandoned_;
  }
  open_.push_back(
      {fragment.sourceAddress, fragment.destinationAddress, fragment.identification, recordOffset, 0, 0, {}, {}});
  return std::prev(open_.end());
}

FragmentJoiner::Result FragmentJoiner::add(const IpFragment &fragment, std::uint64_t recordOffset,
                                           std::uint64_t recordEnd, UdpDatagram &datagram) {
  const std::uint64_t end = fragment.offset + fragment.bytes.size();
  const auto target = find(fragment, recordOffset);
  const Part part{fragment.offset, static_cast<std::uint32_t>(std::min<std::uint64_t>(end, payloadLimit + 1))};
  const bool repeated = std::any_of(target->parts.begin(), target->parts.end(),
                                    [&](const Part &p) { return p.begin == part.begin && p.end == part.end; });
  if (repeated) return Result::Incomplete;
  const bool overlaps = std::any_of(target->parts.begin(), target->parts.end(),
                                    [&](const Part &p) { return p.begin < part.end && part.begin < p.end; });
  const bool uneven = fragment.more && fragment.bytes.size() % 8 != 0;
  const bool beyond = end > payloadLimit || (target->total != 0 && (end > target->total || !fragment.more)) ||
                      (!fragment.more && !target->parts.empty() && target->bytes.size() > end);
  if (overlaps || uneven || beyond || fragment.bytes.empty()) {
    open_.erase(target);
    return Result::Refused;
  }
  if (target->bytes.size() < end) target->bytes.resize(end);
  std::copy(fragment.bytes.begin(), fragment.bytes.end(), target->bytes.begin() + fragment.offset);
  target->parts.push_back(part);
  target->held += static_cast<std::uint32_t>(fragment.bytes.size());
  if (!fragment.more) target->total = static_cast<std::uint32_t>(end);
  if (target->total == 0 || target->held != target->total) return Result::Incomplete;
  joined_ = std::move(target->bytes);
  datagram.recordOffset = target->recordOffset;
  datagram.recordEnd = recordEnd;
  open_.erase(target);
  return readUdp(joined_, datagram) ? Result::Complete : Result::Refused;
}

std::uint64_t FragmentJoiner::takeAbandoned() { return std::exchange(abandoned_, 0); }

}  // namespace tarvo::lidar
