#pragma once

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace tarvo::lidar {

/// Comma-separated text with a header line, row by row. Blank lines and lines that start with '#' are passed over; a
/// byte order mark and blanks around fields are dropped. Throws std::invalid_argument, with the line number, on what it
/// cannot read. The text must outlive the reader.
class ColumnText {
 public:
  explicit ColumnText(std::string_view text);

  /// The next line whose first field is `key`, without that field; false, and nothing consumed, when it is another.
  bool takeLine(std::string_view key, std::vector<std::string_view> &rest);
  /// Reads the header: every name of `required` once, any of `optional`, nothing else.
  void readHeader(std::initializer_list<std::string_view> required,
                  std::initializer_list<std::string_view> optional = {});
  [[nodiscard]] bool hasColumn(std::string_view name) const;
  /// Moves to the next row; false at the end. A row has as many fields as the header.
  bool nextRow();
  /// Value of a column in this row; `what` names it in the message.
  [[nodiscard]] double number(std::string_view column, double low, double high) const;
  [[nodiscard]] int integer(std::string_view column, int low, int high) const;
  [[noreturn]] void fail(const std::string &expected, std::string_view got) const;

  /// A number that fills the whole field and lies in [low, high]; `fail`s otherwise.
  [[nodiscard]] double parseNumber(std::string_view field, std::string_view name, double low, double high) const;

 private:
  bool nextLine();
  void splitLine();
  [[nodiscard]] std::string_view field(std::string_view column) const;

  std::string_view rest_;
  std::string_view line_;
  std::size_t lineNumber_ = 0;
  bool pending_ = false;  // line_ was looked at and not consumed
  std::vector<std::string_view> columns_;
  std::vector<std::string_view> fields_;
};

}  // namespace tarvo::lidar
