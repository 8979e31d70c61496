#include "runtime/calibration/column_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <stdexcept>

namespace tarvo::lidar {
namespace {

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view blanks = " \t\r";
  const auto first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

// What came, fit for a log line.
std::string shown(std::string_view text) {
  std::string out = "\"";
  for (const char c : text.substr(0, 40)) out += static_cast<unsigned char>(c) < 0x20 ? '?' : c;
  return out + (text.size() > 40 ? "...\"" : "\"");
}

std::string plain(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.10g", value);
  return text;
}

}  // namespace

ColumnText::ColumnText(std::string_view text) : rest_(text) {
  if (rest_.starts_with("\xEF\xBB\xBF")) rest_.remove_prefix(3);
}

void ColumnText::fail(const std::string &expected, std::string_view got) const {
  throw std::invalid_argument("line " + std::to_string(std::max<std::size_t>(lineNumber_, 1)) + ": expected " +
                              expected + ", got " + shown(got));
}

bool ColumnText::nextLine() {
  if (pending_) {
    pending_ = false;
    return true;
  }
  while (!rest_.empty()) {
    const auto end = rest_.find('\n');
    line_ = trimmed(rest_.substr(0, end));
    rest_.remove_prefix(end == std::string_view::npos ? rest_.size() : end + 1);
    ++lineNumber_;
    if (!line_.empty() && line_.front() != '#') return true;
  }
  return false;
}

void ColumnText::splitLine() {
  fields_.clear();
  std::string_view left = line_;
  while (true) {
    const auto comma = left.find(',');
    fields_.push_back(trimmed(left.substr(0, comma)));
    if (comma == std::string_view::npos) return;
    left.remove_prefix(comma + 1);
  }
}

bool ColumnText::takeLine(std::string_view key, std::vector<std::string_view> &rest) {
  if (!nextLine()) return false;
  splitLine();
  if (fields_.front() != key) {
    pending_ = true;
    return false;
  }
  rest.assign(fields_.begin() + 1, fields_.end());
  return true;
}

void ColumnText::readHeader(std::initializer_list<std::string_view> required,
                            std::initializer_list<std::string_view> optional) {
  std::string wanted = "a header with";
  for (const auto name : required) wanted += (wanted.back() == 'h' ? " " : ", ") + std::string(name);
  if (!nextLine()) fail(wanted, "end of file");
  splitLine();
  columns_ = fields_;
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    const auto known = [&](auto names) { return std::find(names.begin(), names.end(), columns_[i]) != names.end(); };
    const bool repeated =
        std::find(columns_.begin(), columns_.begin() + long(i), columns_[i]) != columns_.begin() + long(i);
    if (repeated || (!known(required) && !known(optional))) fail(wanted, line_);
  }
  for (const auto name : required)
    if (!hasColumn(name)) fail(wanted, line_);
}

bool ColumnText::hasColumn(std::string_view name) const {
  return std::find(columns_.begin(), columns_.end(), name) != columns_.end();
}

bool ColumnText::nextRow() {
  if (!nextLine()) return false;
  splitLine();
  if (fields_.size() != columns_.size()) fail(std::to_string(columns_.size()) + " fields", line_);
  return true;
}

std::string_view ColumnText::field(std::string_view column) const {
  return fields_[std::size_t(std::find(columns_.begin(), columns_.end(), column) - columns_.begin())];
}

double ColumnText::parseNumber(std::string_view text, std::string_view name, double low, double high) const {
  double value = 0.0;
  if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  const bool whole = error == std::errc{} && end == text.data() + text.size();
  if (!whole || !std::isfinite(value) || value < low || value > high)
    fail(std::string(name) + " from " + plain(low) + " to " + plain(high), text);
  return value;
}

double ColumnText::number(std::string_view column, double low, double high) const {
  return parseNumber(field(column), column, low, high);
}

int ColumnText::integer(std::string_view column, int low, int high) const {
  const std::string_view text = field(column);
  int value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc{} || end != text.data() + text.size() || value < low || value > high)
    fail("a whole " + std::string(column) + " from " + std::to_string(low) + " to " + std::to_string(high), text);
  return value;
}

}  // namespace tarvo::lidar
