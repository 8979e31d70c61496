#pragma once

#include <QByteArray>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace tarvo::skarnvisor::test {

/// The bytes of one vertex; coordinates in metres.
inline QByteArray vertex(double x, double y, double z, std::uint32_t word) {
  const auto bits = [](double metres) {
    return static_cast<std::uint64_t>(std::llround(metres * 1000)) & ((std::uint64_t{1} << 21) - 1);
  };
  const std::uint64_t packed = bits(x) | bits(y) << 21 | bits(z) << 42;
  QByteArray bytes(12, '\0');
  std::memcpy(bytes.data(), &packed, 8);
  std::memcpy(bytes.data() + 8, &word, 4);
  return bytes;
}

}  // namespace tarvo::skarnvisor::test
