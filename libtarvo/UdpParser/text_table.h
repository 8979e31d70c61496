#pragma once

#include <charconv>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarvo::lidar {

// Text cut into lines and fields as the data files of this folder have it. The views point into the given text.

inline constexpr std::uintmax_t maxDataFileBytes = 64U << 20U;

/// The whole file, or nothing when it can't be read or is larger than maxDataFileBytes.
inline std::optional<std::string> readDataFile(const std::string &path) {
  std::error_code unknown;  // a pipe has no size; what it gives is counted below
  if (const auto size = std::filesystem::file_size(path, unknown); !unknown && size > maxDataFileBytes)
    return std::nullopt;
  std::ifstream in(path, std::ios::binary);
  if (!in) return std::nullopt;
  std::string bytes;
  std::string block(1U << 16U, '\0');
  while (in.read(block.data(), static_cast<std::streamsize>(block.size())) || in.gcount() > 0) {
    bytes.append(block, 0, static_cast<std::size_t>(in.gcount()));
    if (bytes.size() > maxDataFileBytes) return std::nullopt;
  }
  return in.bad() ? std::nullopt : std::optional<std::string>(std::move(bytes));
}

/// Takes the next line off `text`, without its end; false when nothing is left.
inline bool takeLine(std::string_view &text, std::string_view &line) {
  if (text.empty()) return false;
  const std::size_t end = text.find('\n');
  line = text.substr(0, end);
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  return true;
}

inline std::string_view withoutByteOrderMark(std::string_view line) {
  return line.substr(0, 3) == "\xEF\xBB\xBF" ? line.substr(3) : line;
}

inline std::string_view withoutLeading(std::string_view field, std::string_view blanks) {
  const std::size_t begin = field.find_first_not_of(blanks);
  return begin == std::string_view::npos ? std::string_view() : field.substr(begin);
}

inline std::string_view trimmed(std::string_view field, std::string_view blanks = " \t\r\n") {
  field = withoutLeading(field, blanks);
  return field.substr(0, field.find_last_not_of(blanks) + 1);
}

inline std::vector<std::string_view> splitAtCommas(std::string_view line) {
  std::vector<std::string_view> fields;
  for (std::size_t begin = 0;;) {
    const std::size_t end = line.find(',', begin);
    fields.push_back(line.substr(begin, end == std::string_view::npos ? end : end - begin));
    if (end == std::string_view::npos) return fields;
    begin = end + 1;
  }
}

/// The number that the text begins with, whatever follows it; nothing when it begins with none or with one out of
/// range.
template <typename Number>
std::optional<Number> leadingNumber(std::string_view text) {
  text = withoutLeading(text, " \t\r\n\v\f");
  if (text.substr(0, 1) == "+" && text.substr(1, 1) != "-") text.remove_prefix(1);
  Number number{};
  const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
  return read.ec == std::errc() ? std::optional<Number>(number) : std::nullopt;
}

}  // namespace tarvo::lidar
