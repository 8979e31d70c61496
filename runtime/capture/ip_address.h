#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace tarvo::lidar {

/// An IPv6 address, in the order of the wire; an IPv4 address in its mapped form, ::ffff:a.b.c.d.
struct IpAddress {
  std::array<std::uint8_t, 16> bytes{};

  static constexpr std::size_t v4At = 12;  ///< where the mapped form holds the IPv4 address

  /// `from` holds 4 or 16 bytes.
  [[nodiscard]] static IpAddress of(std::span<const std::uint8_t> from);
  /// Dotted, or with colons; none for anything else.
  [[nodiscard]] static std::optional<IpAddress> parse(const std::string &text);

  [[nodiscard]] bool isV4() const;
  /// In this machine's byte order; of a mapped address only.
  [[nodiscard]] std::uint32_t v4() const;
  /// An IPv4 or IPv6 group.
  [[nodiscard]] bool isMulticast() const;
  /// 4 or 16 bytes, as they stand in a packet.
  [[nodiscard]] std::span<const std::uint8_t> wire() const;

  bool operator==(const IpAddress &) const = default;
};

}  // namespace tarvo::lidar
