#include <algorithm>
#include <bit>
#include <cstring>

#include "libtarvo/UdpParser/energy_deduct_data_loaders.h"
#include "libtarvo/UdpParser/text_table.h"

namespace tarvo::lidar {
namespace {

static_assert(std::endian::native == std::endian::little, "the array file holds little-endian floats");

std::string_view suffixOf(std::string_view path) {
  constexpr std::size_t length = 4;
  return path.size() < length ? std::string_view() : path.substr(path.size() - length);
}

struct Gains {
  std::vector<float> &r, &g, &b;
};

/// Takes one number off the front of `rest`, blanks before it passed over.
template <typename Number>
bool takeNumber(std::string_view &rest, Number &number) {
  rest = withoutLeading(rest, " \t\r");
  if (rest.substr(0, 1) == "+") rest.remove_prefix(1);
  const auto read = std::from_chars(rest.data(), rest.data() + rest.size(), number);
  if (read.ec != std::errc()) return false;
  rest.remove_prefix(static_cast<std::size_t>(read.ptr - rest.data()));
  return true;
}

/// Calls `take(channel, r, g, b)` for each row that holds a channel and its gains; false when the file can't be read.
template <typename Take>
bool readCsvRows(const std::string &path, const Take &take) {
  std::optional<std::string> text = readDataFile(path);
  if (!text) return false;
  std::replace(text->begin(), text->end(), ',', ' ');
  std::string_view rest = *text;
  std::string_view line;
  while (takeLine(rest, line)) {
    line = withoutByteOrderMark(line);
    if (line.empty() || line.front() == '#' || line.find("channel_index") != std::string_view::npos) continue;
    int channel = 0;
    float r = 1;
    float g = 1;
    float b = 1;
    if (takeNumber(line, channel) && takeNumber(line, r) && takeNumber(line, g) && takeNumber(line, b))
      take(channel, r, g, b);
  }
  return true;
}

bool readCsv(const std::string &path, int channelCount, const Gains &gains) {
  int given = 0;
  const bool read = readCsvRows(path, [&](int channel, float r, float g, float b) {
    if (channel < 0 || channel >= channelCount) return;
    const auto at = static_cast<std::size_t>(channel);
    gains.r[at] = r;
    gains.g[at] = g;
    gains.b[at] = b;
    ++given;
  });
  return read && given >= channelCount / 2;
}

/// The two numbers of a shape tuple in the header of an array file.
bool readShape(std::string_view header, int &rows, int &columns) {
  const std::size_t begin = header.find('(');
  const std::size_t end = header.find(')', begin);
  if (begin == std::string_view::npos || end == std::string_view::npos) return false;
  std::string shape(header.substr(begin + 1, end - begin - 1));
  std::replace(shape.begin(), shape.end(), ',', ' ');
  std::string_view rest = shape;
  return takeNumber(rest, rows) && takeNumber(rest, columns) && rows > 0 && columns > 0;
}

bool readNpy(const std::string &path, int channelCount, const Gains &gains) {
  constexpr std::string_view magic("\x93NUMPY\x01", 7);
  constexpr std::size_t preamble = 10;  // magic, two bytes of version, two of header length
  const std::optional<std::string> bytes = readDataFile(path);
  if (!bytes || bytes->size() < preamble || bytes->compare(0, magic.size(), magic) != 0) return false;
  std::uint16_t headerSize = 0;
  std::memcpy(&headerSize, bytes->data() + 8, sizeof headerSize);
  if (bytes->size() - preamble < headerSize) return false;
  const std::string_view header = std::string_view(*bytes).substr(preamble, headerSize);
  int rows = 0;
  int columns = 0;
  if (header.find("<f4") == std::string_view::npos || header.find("'fortran_order': True") != std::string_view::npos)
    return false;
  if (!readShape(header, rows, columns) || columns != 3 || rows != channelCount) return false;
  const std::string_view data = std::string_view(*bytes).substr(preamble + headerSize);
  const auto count = static_cast<std::size_t>(channelCount);
  if (data.size() < count * 3 * sizeof(float)) return false;
  for (std::size_t i = 0; i < count; ++i) {
    float rgb[3];
    std::memcpy(rgb, data.data() + i * sizeof rgb, sizeof rgb);
    gains.r[i] = rgb[0];
    gains.g[i] = rgb[1];
    gains.b[i] = rgb[2];
  }
  return true;
}

}  // namespace

bool loadChannelEqGains(const std::string &path, int channelCount, std::vector<float> &r, std::vector<float> &g,
                        std::vector<float> &b) {
  const auto count = static_cast<std::size_t>(std::max(0, channelCount));
  for (std::vector<float> *gains : {&r, &g, &b}) gains->assign(count, 1.0F);
  if (suffixOf(path) == ".csv") return readCsv(path, channelCount, {r, g, b});
  return suffixOf(path) == ".npy" && readNpy(path, channelCount, {r, g, b});
}

int lastChannelOfEqGains(const std::string &path) {
  int last = -1;
  if (suffixOf(path) == ".csv")
    readCsvRows(path, [&last](int channel, float, float, float) { last = std::max(last, channel); });
  return last;
}

}  // namespace tarvo::lidar
