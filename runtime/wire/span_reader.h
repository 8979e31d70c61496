#pragma once

#include <span>
#include <string_view>

#include "runtime/wire/little_endian.h"

namespace tarvo::lidar::wire {

/// The one way to read bytes that came from outside: a cursor over a span that never leaves it.
/// A read past the end gives zero (or an empty span), sets `failed()` and moves nothing; every later read fails too, so
/// a caller may read a whole structure and test once.
class SpanReader {
 public:
  explicit SpanReader(std::span<const std::uint8_t> bytes) noexcept : bytes_(bytes) {}

  template <typename T>
  [[nodiscard]] T read() noexcept {
    if (!claim(sizeof(T))) return T{};
    const T value = loadLittle<T>(bytes_.data() + position_);
    position_ += sizeof(T);
    return value;
  }

  [[nodiscard]] std::span<const std::uint8_t> readBytes(std::size_t count) noexcept {
    if (!claim(count)) return {};
    const auto part = bytes_.subspan(position_, count);
    position_ += count;
    return part;
  }

  /// The text lies in the span's own memory and lives as long.
  [[nodiscard]] std::string_view readText(std::size_t count) noexcept {
    const auto part = readBytes(count);
    return {reinterpret_cast<const char *>(part.data()), part.size()};
  }

  void skip(std::size_t count) noexcept {
    if (claim(count)) position_ += count;
  }

  [[nodiscard]] bool failed() const noexcept { return failed_; }
  [[nodiscard]] std::size_t position() const noexcept { return position_; }
  [[nodiscard]] std::size_t remaining() const noexcept { return bytes_.size() - position_; }
  [[nodiscard]] std::span<const std::uint8_t> rest() const noexcept { return bytes_.subspan(position_); }

 private:
  bool claim(std::size_t count) noexcept {
    failed_ = failed_ || count > bytes_.size() - position_;
    return !failed_;
  }

  std::span<const std::uint8_t> bytes_;
  std::size_t position_ = 0;
  bool failed_ = false;
};

}  // namespace tarvo::lidar::wire
