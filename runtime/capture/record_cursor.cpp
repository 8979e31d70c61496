#include "runtime/capture/record_cursor.h"

#include <algorithm>
#include <cstring>

namespace tarvo::lidar {

namespace {

constexpr std::size_t classicHeadSize = 16;
constexpr std::uint32_t capturedLimit = 262'144;  // what capture tools allow for one packet at most
constexpr std::uint32_t blockLimit = 16u << 20;   // a longer pcapng block is taken for damage
constexpr std::uint32_t blockHeadSize = 8;
constexpr std::uint32_t blockFrameSize = 12;  // head, and the length again at the end
constexpr std::size_t interfaceLimit = 4096;
constexpr std::int64_t nanoPerSecond = 1'000'000'000;

enum BlockType : std::uint32_t {
  InterfaceBlock = 1,
  OldPacketBlock = 2,
  SimplePacketBlock = 3,
  EnhancedPacketBlock = 6,
  SectionBlock = 0x0A0D0D0A,
};
constexpr std::uint32_t byteOrderMagic = 0x1A2B3C4D;

enum InterfaceOption : std::uint16_t { OptionEnd = 0, OptionResolution = 9, OptionTimeOffset = 14 };

std::int64_t stampToNs(std::uint64_t ticks, const CaptureInterface &of) {
  const auto perSecond = static_cast<__int128>(of.ticksPerSecond);
  const __int128 ns = static_cast<__int128>(ticks) * nanoPerSecond / perSecond +
                      static_cast<__int128>(of.offsetSeconds) * nanoPerSecond;
  constexpr __int128 most = INT64_MAX;
  return static_cast<std::int64_t>(std::clamp(ns, -most, most));
}

/// Resolution option: a power of ten, or of two with the high bit set. Unusable values read as microseconds.
std::uint64_t ticksPerSecondOf(std::uint8_t resolution) {
  const unsigned power = resolution & 0x7Fu;
  if ((resolution & 0x80u) != 0) return power < 63 ? std::uint64_t{1} << power : 1'000'000;
  if (power > 18) return 1'000'000;
  std::uint64_t ticks = 1;
  for (unsigned i = 0; i < power; ++i) ticks *= 10;
  return ticks;
}

/// Whether a block is of a kind that is looked into.
bool isRead(std::uint32_t type) {
  return type == InterfaceBlock || type == OldPacketBlock || type == SimplePacketBlock || type == EnhancedPacketBlock ||
         type == SectionBlock;
}

}  // namespace

RecordCursor::RecordCursor(CaptureFile &file, CaptureCounters &counters, std::uint64_t offset, std::uint64_t limit,
                           std::size_t window)
    : file_(file),
      counters_(counters),
      position_(offset),
      limit_(std::min(limit, file.size())),
      windowSize_(std::max<std::size_t>(window, 4096)),
      section_(file.sectionAt(offset)) {}

bool RecordCursor::next(CaptureRecord &record) {
  if (stopped_) return false;
  return file_.form() == CaptureFile::Form::Pcap ? nextClassic(record) : nextBlock(record);
}

bool RecordCursor::ensure(std::size_t count) {
  if (position_ >= windowOffset_ && position_ + count <= windowOffset_ + windowUsed_) return true;
  const std::uint64_t left = file_.size() - std::min(position_, file_.size());
  if (count > left) return false;
  const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(std::max(windowSize_, count), left));
  if (window_.size() < wanted) window_.resize(wanted);
  windowOffset_ = position_;
  windowUsed_ = file_.read(position_, {window_.data(), wanted});
  return windowUsed_ >= count;
}

bool RecordCursor::stop(InputFault fault) {
  stopped_ = true;
  counters_.add(fault, position_);
  return false;
}

std::uint32_t RecordCursor::word(std::size_t at) const {
  std::uint32_t value;
  std::memcpy(&value, here() + at, sizeof value);
  return section_.swapped ? __builtin_bswap32(value) : value;
}

std::uint16_t RecordCursor::half(std::size_t at) const {
  std::uint16_t value;
  std::memcpy(&value, here() + at, sizeof value);
  return section_.swapped ? __builtin_bswap16(value) : value;
}

bool RecordCursor::nextClassic(CaptureRecord &record) {
  if (position_ >= limit_) return false;
  if (!ensure(classicHeadSize)) return stop(InputFault::TruncatedFile);
  const std::uint32_t captured = word(8);
  if (captured > capturedLimit) return stop(InputFault::DamagedRecord);
  if (!ensure(classicHeadSize + captured)) return stop(InputFault::TruncatedFile);
  const CaptureInterface &only = section_.interfaces.front();
  record.offset = position_;
  record.end = position_ + classicHeadSize + captured;
  record.timeNs = static_cast<std::int64_t>(word(0)) * nanoPerSecond +
                  static_cast<std::int64_t>(word(4)) * (nanoPerSecond / static_cast<std::int64_t>(only.ticksPerSecond));
  record.linkType = only.linkType;
  record.originalLength = word(12);
  record.bytes = {here() + classicHeadSize, captured};
  position_ = record.end;
  return true;
}

bool RecordCursor::nextBlock(CaptureRecord &record) {
  while (position_ < limit_) {
    std::uint32_t type = 0;
    std::uint32_t length = 0;
    if (!readBlockHead(type, length)) return false;
    if (type == SectionBlock)
      takeSection();
    else if (type == InterfaceBlock)
      takeInterface(length);
    else if (takePacket(type, length, record)) {
      record.offset = position_;
      record.end = position_ + length;
      position_ = record.end;
      return true;
    }
    position_ += length;
  }
  return false;
}

bool RecordCursor::readBlockHead(std::uint32_t &type, std::uint32_t &length) {
  if (!ensure(blockFrameSize)) return stop(InputFault::TruncatedFile);
  std::uint32_t raw;
  std::memcpy(&raw, here(), sizeof raw);
  if (raw == SectionBlock) {
    std::uint32_t order;
    std::memcpy(&order, here() + blockHeadSize, sizeof order);
    if (order != byteOrderMagic && order != __builtin_bswap32(byteOrderMagic)) return stop(InputFault::DamagedRecord);
    section_ = {position_, order != byteOrderMagic, {}};
  }
  type = raw == SectionBlock ? raw : word(0);
  length = word(4);
  if (length < blockFrameSize || length % 4 != 0 || length > blockLimit) return stop(InputFault::DamagedRecord);
  if (!isRead(type)) {
    // Passed over unread, however long.
    return length <= file_.size() - position_ || stop(InputFault::TruncatedFile);
  }
  if (!ensure(length)) return stop(InputFault::TruncatedFile);
  return word(length - 4) == length || stop(InputFault::DamagedRecord);
}

void RecordCursor::takeSection() { file_.noteSection(section_); }

void RecordCursor::takeInterface(std::uint32_t length) {
  constexpr std::uint32_t fixed = blockHeadSize + 8;
  if (length < fixed + 4 || section_.interfaces.size() >= interfaceLimit) {
    counters_.add(InputFault::UnknownInterface, position_);
    return;
  }
  CaptureInterface description;
  description.offset = position_;
  description.linkType = half(blockHeadSize);
  std::uint32_t at = fixed;
  while (at + 4 <= length - 4) {
    const std::uint16_t code = half(at);
    const std::uint32_t size = half(at + 2);
    if (code == OptionEnd || at + 4 + size > length - 4) break;
    if (code == OptionResolution && size >= 1) description.ticksPerSecond = ticksPerSecondOf(here()[at + 4]);
    if (code == OptionTimeOffset && size >= 8) {
      const std::uint64_t low = word(at + (section_.swapped ? 8 : 4));
      const std::uint64_t high = word(at + (section_.swapped ? 4 : 8));
      description.offsetSeconds = static_cast<std::int64_t>(high << 32 | low);
    }
    at += 4 + (size + 3) / 4 * 4;
  }
  section_.interfaces.push_back(description);
  file_.noteInterface(section_.offset, description);
}

bool RecordCursor::takePacket(std::uint32_t type, std::uint32_t length, CaptureRecord &record) {
  if (!isRead(type)) return false;  // name tables, statistics and the like
  const bool simple = type == SimplePacketBlock;
  const std::uint32_t fixed = blockHeadSize + (simple ? 4 : 20);
  const std::uint32_t room = length - 4 > fixed ? length - 4 - fixed : 0;
  if (length < fixed + 4) {
    counters_.add(InputFault::CutPacket, position_);
    return false;
  }
  const std::uint32_t captured = simple ? std::min(word(blockHeadSize), room) : word(blockHeadSize + 12);
  const std::uint32_t interface = simple ? 0 : type == EnhancedPacketBlock ? word(blockHeadSize) : half(blockHeadSize);
  if (interface >= section_.interfaces.size() || captured > room) {
    counters_.add(captured > room ? InputFault::CutPacket : InputFault::UnknownInterface, position_);
    return false;
  }
  const CaptureInterface &from = section_.interfaces[interface];
  const std::uint64_t ticks = simple ? 0 : std::uint64_t{word(blockHeadSize + 4)} << 32 | word(blockHeadSize + 8);
  record.timeNs = simple ? 0 : stampToNs(ticks, from);
  record.linkType = from.linkType;
  record.originalLength = word(simple ? blockHeadSize : blockHeadSize + 16);
  record.bytes = {here() + fixed, captured};
  return true;
}

}  // namespace tarvo::lidar
