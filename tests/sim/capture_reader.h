#pragma once

#include <cstdint>
#include <cstring>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

/// A second reader of capture files and packets, written from the format's description alone: it shares no code with
/// the runtime, so that a slip in the shared headers shows.
namespace capture_reader {

using Bytes = std::vector<std::uint8_t>;

struct Packet {
  std::uint64_t stampNs = 0;
  std::uint16_t port = 0;
  Bytes payload;
};

template <typename T>
T at(const Bytes &bytes, std::size_t offset) {
  T value{};
  if (offset + sizeof value > bytes.size()) throw std::out_of_range("read past the end");
  std::memcpy(&value, bytes.data() + offset, sizeof value);
  return value;
}

inline std::size_t big16(const Bytes &bytes, std::size_t offset) {
  return std::size_t{bytes.at(offset)} << 8 | bytes.at(offset + 1);
}

/// Internet checksum over `bytes` from `begin`, with `sum` added; 0xFFFF when the stored checksum is right.
inline std::uint32_t foldedSum(const Bytes &bytes, std::size_t begin, std::size_t end, std::uint32_t sum) {
  for (std::size_t i = begin; i < end; i += 2)
    sum += static_cast<std::uint32_t>(bytes.at(i)) << 8 | (i + 1 < end ? bytes.at(i + 1) : 0u);
  while (sum >> 16 != 0) sum = (sum & 0xFFFF) + (sum >> 16);
  return sum;
}

inline Packet unframed(const Bytes &frame, std::uint64_t stampNs) {
  if (frame.size() > 1248 || big16(frame, 12) != 0x0800 || frame.at(14) != 0x45 || frame.at(23) != 17)
    throw std::runtime_error("not a UDP datagram in an IPv4 frame of at most 1248 bytes");
  if (big16(frame, 16) != frame.size() - 14 || big16(frame, 38) != frame.size() - 34)
    throw std::runtime_error("length of IPv4 or UDP is wrong");
  if (foldedSum(frame, 14, 34, 0) != 0xFFFF) throw std::runtime_error("IPv4 checksum is wrong");
  const auto pseudo = static_cast<std::uint32_t>(17 + frame.size() - 34);
  if (foldedSum(frame, 26, frame.size(), pseudo) != 0xFFFF) throw std::runtime_error("UDP checksum is wrong");
  return {stampNs, static_cast<std::uint16_t>(big16(frame, 36)), Bytes(frame.begin() + 42, frame.end())};
}

inline Bytes fileBytes(const std::string &path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

inline Bytes slice(const Bytes &bytes, std::size_t offset, std::size_t count) {
  if (offset + count > bytes.size()) throw std::out_of_range("record past the end of the file");
  return {bytes.begin() + static_cast<std::ptrdiff_t>(offset),
          bytes.begin() + static_cast<std::ptrdiff_t>(offset + count)};
}

inline std::vector<Packet> readCapture(const std::string &path) {
  const Bytes file = fileBytes(path);
  std::vector<Packet> packets;
  const auto magic = at<std::uint32_t>(file, 0);
  if (magic == 0x0A0D0D0A) {
    for (std::size_t block = 0; block < file.size();) {
      const auto length = at<std::uint32_t>(file, block + 4);
      if (length % 4 != 0 || at<std::uint32_t>(file, block + length - 4) != length)
        throw std::runtime_error("the two lengths of a block differ");
      if (at<std::uint32_t>(file, block) == 6)
        packets.push_back(
            unframed(slice(file, block + 28, at<std::uint32_t>(file, block + 20)),
                     std::uint64_t{at<std::uint32_t>(file, block + 12)} << 32 | at<std::uint32_t>(file, block + 16)));
      block += length;
    }
    return packets;
  }
  const std::uint64_t fractionNs = magic == 0xA1B23C4D ? 1 : magic == 0xA1B2C3D4 ? 1000 : 0;
  if (fractionNs == 0 || at<std::uint32_t>(file, 20) != 1) throw std::runtime_error("not a capture of Ethernet frames");
  for (std::size_t record = 24; record < file.size();) {
    const auto length = at<std::uint32_t>(file, record + 8);
    packets.push_back(
        unframed(slice(file, record + 16, length), at<std::uint32_t>(file, record) * std::uint64_t{1'000'000'000} +
                                                       at<std::uint32_t>(file, record + 4) * fractionNs));
    record += 16 + length;
  }
  return packets;
}

}  // namespace capture_reader
