#pragma once

#include <charconv>
#include <concepts>
#include <cstring>
#include <string_view>
#include <vector>

#include "default/files/float_text.h"

namespace tarvo::skarnvisor {

/// Text in memory, written as an output stream writes it: the form of floats is a state of the stream, which holds
/// for everything written later. One thread.
class TextStream {
 public:
  enum class Floats {
    General,      ///< six significant digits, as a stream starts
    SixDecimals,  ///< fixed notation
  };

  void append(char c) {
    *room(1) = c;
    ++m_used;
  }
  void append(std::string_view text) {
    if (text.empty()) return;
    std::memcpy(room(text.size()), text.data(), text.size());
    m_used += text.size();
  }
  void append(std::integral auto number) {
    char *const place = room(longestNumberText);
    wrote(std::to_chars(place, place + longestNumberText, number).ptr);
  }
  /// In the stream's form.
  void append(float number) {
    char *const place = room(longestNumberText);
    wrote(m_floats == Floats::General ? writeGeneral(place, number) : writeSixDecimals(place, number));
  }
  /// Turns to six decimals, for good, and appends.
  void appendSixDecimals(double number) {
    m_floats = Floats::SixDecimals;
    wrote(writeSixDecimals(room(longestNumberText), number));
  }
  /// As `QString::number(number, 'f', decimals)`, whatever the stream's form.
  void appendDecimals(double number, int decimals) { wrote(writeDecimals(room(longestNumberText), number, decimals)); }

  void setFloats(Floats floats) { m_floats = floats; }
  [[nodiscard]] Floats floats() const { return m_floats; }

  [[nodiscard]] std::string_view view() const { return {m_bytes.data(), m_used}; }
  /// Forgets the text; the form of floats stays.
  void clear() { m_used = 0; }

 private:
  char *room(std::size_t bytes) {
    if (m_bytes.size() - m_used < bytes) m_bytes.resize(m_bytes.size() * 2 + bytes);
    return m_bytes.data() + m_used;
  }
  void wrote(const char *end) { m_used = static_cast<std::size_t>(end - m_bytes.data()); }

  std::vector<char> m_bytes;
  std::size_t m_used = 0;
  Floats m_floats = Floats::General;
};

}  // namespace tarvo::skarnvisor
