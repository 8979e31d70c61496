#include "default/point_files/readers/ply_header.h"

#include <algorithm>
#include <sstream>
#include <stdexcept>
#include <utility>

#include "default/point_files/readers/text_lines.h"

namespace tarvo::skarnvisor {

namespace {

constexpr std::array<std::pair<const char *, ScalarType>, 16> typeNames = {{{"char", ScalarType::i8},
                                                                            {"int8", ScalarType::i8},
                                                                            {"uchar", ScalarType::u8},
                                                                            {"uint8", ScalarType::u8},
                                                                            {"short", ScalarType::i16},
                                                                            {"int16", ScalarType::i16},
                                                                            {"ushort", ScalarType::u16},
                                                                            {"uint16", ScalarType::u16},
                                                                            {"int", ScalarType::i32},
                                                                            {"int32", ScalarType::i32},
                                                                            {"uint", ScalarType::u32},
                                                                            {"uint32", ScalarType::u32},
                                                                            {"float", ScalarType::f32},
                                                                            {"float32", ScalarType::f32},
                                                                            {"double", ScalarType::f64},
                                                                            {"float64", ScalarType::f64}}};

/// Takes the header line by line; `number` is the line's, from 1.
class HeaderParser {
 public:
  explicit HeaderParser(PlyHeader &header) : m_header(header) {}

  /// False after "end_header".
  bool take(const std::string &line) {
    ++m_number;
    std::istringstream words(line);
    std::string key;
    words >> key;
    if (m_number == 1) {
      if (key != "ply") fail("expected \"ply\"", line);
      return true;
    }
    if (key == "end_header") return false;
    if (key == "format")
      takeFormat(words, line);
    else if (key == "element")
      takeElement(words, line);
    else if (key == "property")
      takeProperty(words, line);
    else if (!key.empty() && key != "comment" && key != "obj_info")
      fail("expected element, property or end_header", line);
    return true;
  }

 private:
  [[noreturn]] void fail(const std::string &expected, const std::string &line) const {
    throw std::runtime_error("PLY parser: line " + std::to_string(m_number) + ": " + expected + ", found \"" +
                             line.substr(0, 80) + "\"");
  }

  void takeFormat(std::istringstream &words, const std::string &line) {
    std::string name;
    words >> name;
    if (name == "ascii")
      m_header.format = PlyFormat::ascii;
    else if (name == "binary_little_endian")
      m_header.format = PlyFormat::littleEndian;
    else if (name == "binary_big_endian")
      m_header.format = PlyFormat::bigEndian;
    else
      fail("expected format ascii, binary_little_endian or binary_big_endian", line);
  }

  void takeElement(std::istringstream &words, const std::string &line) {
    PlyElement element;
    std::string count;
    words >> element.name >> count;
    const bool digits = !count.empty() && count.size() <= 18 &&
                        std::all_of(count.begin(), count.end(), [](char c) { return c >= '0' && c <= '9'; });
    if (!digits) fail("expected a name and a count of 0 or more", line);
    element.count = std::stoull(count);
    m_header.elements.push_back(std::move(element));
  }

  void takeProperty(std::istringstream &words, const std::string &line) {
    if (m_header.elements.empty()) fail("expected an element before its properties", line);
    PlyProperty property;
    std::string type;
    words >> type;
    if (type == "list") {
      std::string length;
      words >> length >> type;
      property.lengthType = scalarType(length, line);
      if (property.lengthType == ScalarType::f32 || property.lengthType == ScalarType::f64)
        fail("expected a whole-number type for the list's length", line);
    }
    property.type = scalarType(type, line);
    words >> property.name;
    if (property.name.empty()) fail("expected a property's name", line);
    m_header.elements.back().properties.push_back(std::move(property));
  }

  [[nodiscard]] ScalarType scalarType(const std::string &name, const std::string &line) const {
    for (const auto &[known, type] : typeNames)
      if (name == known) return type;
    fail("expected a property type", line);
  }

  PlyHeader &m_header;
  int m_number = 0;
};

}  // namespace

bool PlyElement::hasList() const {
  return std::any_of(properties.begin(), properties.end(),
                     [](const PlyProperty &property) { return property.isList(); });
}

std::uint64_t PlyElement::recordBytes() const {
  std::uint64_t bytes = 0;
  for (const PlyProperty &property : properties) bytes += scalarSize(property.type);
  return bytes;
}

PlyHeader readPlyHeader(const InputFile &file) {
  PlyHeader header;
  HeaderParser parser(header);
  bool ended = false;
  std::uint64_t position = 0;
  forEachLine(file, 0, 0, file.size(), [&](const char *begin, const char *end) {
    ended = !parser.take(std::string(begin, end));
    position += static_cast<std::uint64_t>(end - begin);
    char next = '\n';
    if (file.readAt(position, &next, 1) == 1 && next == '\r') ++position;
    ++position;
    return !ended;
  });
  if (!ended) throw std::runtime_error("PLY parser: the file ends before \"end_header\"");
  header.dataStart = std::min(position, file.size());
  return header;
}

}  // namespace tarvo::skarnvisor
