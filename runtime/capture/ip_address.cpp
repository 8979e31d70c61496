#include "runtime/capture/ip_address.h"

#include <arpa/inet.h>

#include <algorithm>

namespace tarvo::lidar {

namespace {

constexpr std::array<std::uint8_t, IpAddress::v4At> mappedPrefix{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0xFF};

}  // namespace

IpAddress IpAddress::of(std::span<const std::uint8_t> from) {
  IpAddress address;
  if (from.size() == address.bytes.size()) {
    std::copy(from.begin(), from.end(), address.bytes.begin());
  } else {
    std::copy(mappedPrefix.begin(), mappedPrefix.end(), address.bytes.begin());
    std::copy_n(from.begin(), address.bytes.size() - v4At, address.bytes.begin() + v4At);
  }
  return address;
}

std::optional<IpAddress> IpAddress::parse(const std::string &text) {
  std::array<std::uint8_t, 16> bytes{};
  if (::inet_pton(AF_INET, text.c_str(), bytes.data()) == 1) return of(std::span(bytes).first(4));
  if (::inet_pton(AF_INET6, text.c_str(), bytes.data()) == 1) return of(bytes);
  return std::nullopt;
}

bool IpAddress::isV4() const { return std::equal(mappedPrefix.begin(), mappedPrefix.end(), bytes.begin()); }

std::uint32_t IpAddress::v4() const {
  return std::uint32_t{bytes[12]} << 24 | std::uint32_t{bytes[13]} << 16 | std::uint32_t{bytes[14]} << 8 | bytes[15];
}

bool IpAddress::isMulticast() const { return isV4() ? bytes[v4At] >> 4 == 0xE : bytes[0] == 0xFF; }

std::span<const std::uint8_t> IpAddress::wire() const { return std::span(bytes).subspan(isV4() ? v4At : 0); }

}  // namespace tarvo::lidar
