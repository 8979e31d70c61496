#include "runtime/capture/capture_cutter.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <map>
#include <set>

#include "runtime/capture/datagram_reader.h"
#include "runtime/capture/packet_records.h"
#include "runtime/capture/replacing_file.h"

namespace tarvo::lidar {

namespace {

constexpr std::uint64_t readWindow = 256u << 10;
constexpr std::uint32_t longestHeadBlock = 1u << 20;
constexpr std::uint64_t watchStride = 4u << 20;

}  // namespace

bool CaptureCutter::cut(const std::string &path, const FrameIndex &index, int first, int last, std::string &error) {
  const Ranges ranges = rangesOf(index, first, last);
  ReplacingFile to;
  bool good = !watch_.givenUp() && to.open(path);
  if (file_.form() == CaptureFile::Form::Pcap) {
    good = good && copyClassic(to, ranges);
  } else if (good) {
    bool mixed = false;
    good = convert(to, ranges, mixed);
    if (mixed) good = to.clear() && copyBlocks(to, ranges);
  }
  if (good && watch_.finish() && to.commit()) return true;
  error = to.error();
  return false;
}

/// The stretches of the file that the cut is made of.
CaptureCutter::Ranges CaptureCutter::rangesOf(const FrameIndex &index, int first, int last) {
  const std::uint64_t begin = index.at(first)->offset;
  std::uint64_t end = begin;
  for (int id = first; id <= last; ++id)
    if (const auto frame = index.at(id)) end = std::max(end, frame->offset + frame->length);
  // The last frame's stretch is read once more than the others.
  watch_.begin(end - begin + (end - index.at(last)->offset), watchStride);
  Ranges ranges;
  for (const RecordPlace &record : setup_)
    if (record.offset < begin || record.offset >= end) ranges.push_back(record);
  std::uint64_t at = begin;
  for (const RecordPlace &left : recordsBehind(index, first, last, end)) {
    if (left.offset > at) ranges.push_back({at, left.offset});
    at = left.end;
  }
  if (at < end) ranges.push_back({at, end});
  return ranges;
}

std::optional<std::uint64_t> CaptureCutter::keyAt(const IndexedFrame &frame) {
  CaptureCounters counters;
  DatagramReader reader(file_, counters, frame.offset, frame.offset + frame.length, readWindow, false);
  UdpDatagram datagram;
  while (reader.next(datagram))
    if (datagram.destinationPort == port_)
      if (const auto key = decoder_.frameKey(datagram)) return key;
  return std::nullopt;
}

/// Records in front of `end` with packets of frames behind the run: late packets of its last frame came after them.
std::vector<RecordPlace> CaptureCutter::recordsBehind(const FrameIndex &index, int first, int last, std::uint64_t end) {
  std::set<std::uint64_t> wanted;
  for (int id = std::max(first, last - 1); id <= last; ++id)
    if (const auto key = keyAt(*index.at(id))) wanted.insert(*key);
  const auto foreign = [&](const UdpDatagram &datagram) {
    if (datagram.destinationPort != port_) return false;
    const auto key = decoder_.frameKey(datagram);
    return key && !wanted.contains(*key);
  };
  std::vector<RecordPlace> left;
  std::map<std::uint32_t, std::vector<RecordPlace>> fragments;  // by identification, of datagrams not joined yet
  FragmentJoiner joiner;
  CaptureCounters counters;
  RecordCursor cursor(file_, counters, index.at(last)->offset, end, readWindow);
  CaptureRecord record;
  UdpDatagram datagram;
  IpFragment fragment;
  while (watch_.advance(record.end - record.offset) && cursor.next(record)) {
    const Dissection found = dissect(record.linkType, record.bytes, datagram, fragment);
    if (found == Dissection::Udp && foreign(datagram)) left.push_back({record.offset, record.end});
    if (found != Dissection::Fragment) continue;
    auto &parts = fragments[fragment.identification];
    parts.push_back({record.offset, record.end});
    const auto joined = joiner.add(fragment, record.offset, record.end, datagram);
    if (joined == FragmentJoiner::Result::Incomplete) continue;
    if (joined == FragmentJoiner::Result::Complete && foreign(datagram))
      left.insert(left.end(), parts.begin(), parts.end());
    fragments.erase(fragment.identification);
  }
  std::sort(left.begin(), left.end(), [](const RecordPlace &a, const RecordPlace &b) { return a.offset < b.offset; });
  return left;
}

bool CaptureCutter::copyRange(ReplacingFile &to, const RecordPlace &range) {
  for (std::uint64_t at = range.offset; at < range.end;) {
    const std::uint64_t next = std::min(range.end, at + watchStride);
    if (!to.appendFrom(file_, at, next) || !watch_.advance(next - at)) return false;
    at = next;
  }
  return true;
}

bool CaptureCutter::copyClassic(ReplacingFile &to, const Ranges &ranges) {
  bool good = to.appendFrom(file_, 0, file_.firstRecord());
  for (const RecordPlace &range : ranges) good = good && copyRange(to, range);
  return good;
}

/// As a nanosecond pcap. `mixed`: given up, since that form has one link type for all packets.
bool CaptureCutter::convert(ReplacingFile &to, const Ranges &ranges, bool &mixed) {
  std::optional<std::uint32_t> linkType;
  std::vector<std::uint8_t> bytes;
  CaptureCounters counters;
  CaptureRecord record;
  for (const RecordPlace &range : ranges) {
    RecordCursor cursor(file_, counters, range.offset, range.end, readWindow);
    while (cursor.next(record)) {
      bytes.clear();
      if (!linkType) appendCaptureHead(bytes, record.linkType);
      mixed = linkType && *linkType != record.linkType;
      if (mixed) return false;
      linkType = record.linkType;
      appendRecord(bytes, record.timeNs, record.bytes, record.originalLength);
      if (!to.append(bytes) || !watch_.advance(record.end - record.offset)) return false;
    }
  }
  return true;
}

/// As a pcapng: the blocks that describe the first packet's section and interfaces, then the packets' blocks.
bool CaptureCutter::copyBlocks(ReplacingFile &to, const Ranges &ranges) {
  const auto longest = std::max_element(ranges.begin(), ranges.end(), [](const RecordPlace &a, const RecordPlace &b) {
    return a.end - a.offset < b.end - b.offset;
  });
  const CaptureSection section = file_.sectionAt(longest->offset);
  bool good = copyHeadBlock(to, section.offset, section.swapped, true);
  for (const CaptureInterface &interface : section.interfaces)
    good = good && copyHeadBlock(to, interface.offset, section.swapped, false);
  for (const RecordPlace &range : ranges) {
    // Lone packets of another section, or of a later interface, cannot be read with what this one describes.
    const bool lone = range.offset < longest->offset ? file_.sectionAt(range.offset).offset != section.offset
                                                     : range.offset >= longest->end;
    if (!lone) good = good && copyRange(to, range);
  }
  return good;
}

bool CaptureCutter::copyHeadBlock(ReplacingFile &to, std::uint64_t offset, bool swapped, bool section) {
  constexpr std::size_t lengthAt = 4;
  constexpr std::size_t sectionLengthAt = 16;
  constexpr std::size_t sectionHeadSize = 28;
  std::array<std::uint8_t, 8> head{};
  if (file_.read(offset, head) != head.size()) return false;
  std::uint32_t length;
  std::memcpy(&length, head.data() + lengthAt, sizeof length);
  if (swapped) length = __builtin_bswap32(length);
  std::vector<std::uint8_t> block(std::min(length, longestHeadBlock));
  if (file_.read(offset, block) != block.size()) return false;
  // The section's length is another one now: unknown.
  if (section && block.size() >= sectionHeadSize) std::fill_n(block.begin() + sectionLengthAt, 8, std::uint8_t{0xFF});
  return to.append(block);
}

}  // namespace tarvo::lidar
