#include "runtime/calibration/calibration_tables.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>

#include "runtime/calibration/column_text.h"

namespace tarvo::lidar {
namespace {

// Gathers the rows of a table by channel and makes sure that each channel from 1 to the last comes exactly once.
class ChannelRows {
 public:
  int take(const ColumnText &text) {
    const int channel = text.integer("channel", 1, maxChannels);
    if (std::size_t(channel) > seen_.size()) seen_.resize(std::size_t(channel), false);
    if (seen_[std::size_t(channel) - 1])
      text.fail("each channel once", "channel " + std::to_string(channel) + " again");
    seen_[std::size_t(channel) - 1] = true;
    ++rows_;
    return channel - 1;
  }
  [[nodiscard]] std::size_t size() const { return seen_.size(); }
  // `channels`: how many there must be; 0: any number.
  void checkComplete(const ColumnText &text, int channels) const {
    if (rows_ == 0) text.fail("at least one channel", "end of file");
    const auto missing = std::find(seen_.begin(), seen_.end(), false);
    if (missing != seen_.end())
      text.fail("every channel from 1 to " + std::to_string(seen_.size()),
                "no channel " + std::to_string(missing - seen_.begin() + 1));
    if (channels != 0 && rows_ != std::size_t(channels))
      text.fail("the lidar's " + std::to_string(channels) + " channels", std::to_string(rows_));
  }

 private:
  std::vector<bool> seen_;
  std::size_t rows_ = 0;
};

template <class T>
void put(std::vector<T> &values, int index, T value) {
  if (values.size() <= std::size_t(index)) values.resize(std::size_t(index) + 1);
  values[std::size_t(index)] = value;
}

void append(std::string &out, double value) {
  char text[32];
  out.append(text, std::to_chars(text, text + sizeof text, value).ptr);
}
void append(std::string &out, float value) {
  char text[32];
  out.append(text, std::to_chars(text, text + sizeof text, value).ptr);
}

// A section is a run of consecutive channels, so that its arrays are parts of the whole table's.
void gatherSections(const ColumnText &text, const std::vector<int> &sectionOf, CorrectionTable &table) {
  for (std::size_t i = 0; i < sectionOf.size(); ++i) {
    auto &section = table.sections[std::size_t(sectionOf[i])];
    if (section.count == 0) section.first = int(i);
    if (section.first + section.count != int(i))
      text.fail("the channels of a section in one run",
                "section " + std::to_string(sectionOf[i]) + " again at channel " + std::to_string(i + 1));
    ++section.count;
  }
}

std::vector<float> parseChannelValues(std::string_view source,
                                      std::initializer_list<std::pair<std::string_view, double>> units, double limit,
                                      int channels) {
  ColumnText text(source);
  text.readHeader({"channel"}, {units.begin()->first, (units.end() - 1)->first});
  const auto unit = std::find_if(units.begin(), units.end(), [&](const auto &u) { return text.hasColumn(u.first); });
  if (unit == units.end()) text.fail("a header with channel, " + std::string(units.begin()->first), "channel alone");
  ChannelRows rows;
  std::vector<float> values;
  while (text.nextRow()) {
    const int index = rows.take(text);
    put(values, index, float(text.number(unit->first, -limit / unit->second, limit / unit->second) * unit->second));
  }
  rows.checkComplete(text, channels);
  return values;
}

std::string formatChannelValues(std::string_view column, const std::vector<float> &values) {
  std::string out = "channel," + std::string(column) + "\n";
  for (std::size_t i = 0; i < values.size(); ++i) {
    out += std::to_string(i + 1) + ',';
    append(out, values[i]);
    out += '\n';
  }
  return out;
}

}  // namespace

CorrectionTable parseCorrections(std::string_view source, int channels) {
  ColumnText text(source);
  CorrectionTable table;
  std::vector<std::string_view> span;
  if (text.takeLine("frame_span", span))
    for (const auto field : span) table.frameSpan.push_back(text.parseNumber(field, "frame_span", -360.0, 360.0));

  text.readHeader({"channel", "elevation", "azimuth"}, {"azimuth_odd", "section"});
  const bool odd = text.hasColumn("azimuth_odd");
  const bool sections = text.hasColumn("section");
  ChannelRows rows;
  std::vector<int> sectionOf;
  while (text.nextRow()) {
    const int index = rows.take(text);
    put(table.elevations, index, float(text.number("elevation", -90.0, 90.0)));
    put(table.azimuths, index, float(text.number("azimuth", -360.0, 360.0)));
    if (odd) put(table.azimuthsOdd, index, float(text.number("azimuth_odd", -360.0, 360.0)));
    if (sections) put(sectionOf, index, text.integer("section", 0, correctionSections - 1));
  }
  rows.checkComplete(text, channels);
  gatherSections(text, sectionOf, table);
  return table;
}

FiretimeTable parseFiretimes(std::string_view text, int channels) {
  return {parseChannelValues(text, {{"firetime_ns", 1.0}, {"firetime_us", 1000.0}}, 1e9, channels)};
}

DcfTable parseDcf(std::string_view text, int channels) {
  return {parseChannelValues(text, {{"distance_offset", 1.0}}, 1000.0, channels)};
}

NonlinearTable parseNonlinear(std::string_view source) {
  ColumnText text(source);
  text.readHeader({"input", "output"});
  NonlinearTable table;
  while (text.nextRow()) {
    const int input = text.integer("input", 0, 65535);
    if (!table.inputs.empty() && input <= table.inputs.back())
      text.fail("an input above " + std::to_string(table.inputs.back()), std::to_string(input));
    table.inputs.push_back(std::uint16_t(input));
    table.outputs.push_back(std::uint16_t(text.integer("output", 0, 65535)));
  }
  if (table.inputs.size() < 2) text.fail("at least two rows", std::to_string(table.inputs.size()));
  return table;
}

ChannelConfigTable parseChannelConfig(std::string_view source, int channels) {
  ColumnText text(source);
  text.readHeader({"channel", "enabled"});
  ChannelRows rows;
  ChannelConfigTable table;
  while (text.nextRow()) {
    const int index = rows.take(text);
    put(table.enabled, index, text.integer("enabled", 0, 1) == 1);
  }
  rows.checkComplete(text, channels);
  return table;
}

std::string formatTable(const CorrectionTable &table) {
  std::string out;
  if (!table.frameSpan.empty()) {
    out += "frame_span";
    for (const double value : table.frameSpan) append(out += ',', value);
    out += '\n';
  }
  std::vector<int> sectionOf;
  for (int s = 0; s < correctionSections; ++s)
    for (int i = 0; i < table.sections[std::size_t(s)].count; ++i)
      put(sectionOf, table.sections[std::size_t(s)].first + i, s);
  out += "channel,elevation,azimuth";
  if (!table.azimuthsOdd.empty()) out += ",azimuth_odd";
  out += sectionOf.empty() ? "\n" : ",section\n";
  for (std::size_t i = 0; i < table.elevations.size(); ++i) {
    out += std::to_string(i + 1) + ',';
    append(out, table.elevations[i]);
    append(out += ',', table.azimuths[i]);
    if (!table.azimuthsOdd.empty()) append(out += ',', table.azimuthsOdd[i]);
    if (!sectionOf.empty()) out += ',' + std::to_string(sectionOf[i]);
    out += '\n';
  }
  return out;
}

std::string formatTable(const FiretimeTable &table) { return formatChannelValues("firetime_ns", table.nanoseconds); }

std::string formatTable(const DcfTable &table) { return formatChannelValues("distance_offset", table.distanceOffsets); }

std::string formatTable(const NonlinearTable &table) {
  std::string out = "input,output\n";
  for (std::size_t i = 0; i < table.inputs.size(); ++i)
    out += std::to_string(table.inputs[i]) + ',' + std::to_string(table.outputs[i]) + '\n';
  return out;
}

std::string formatTable(const ChannelConfigTable &table) {
  std::string out = "channel,enabled\n";
  for (std::size_t i = 0; i < table.enabled.size(); ++i)
    out += std::to_string(i + 1) + (table.enabled[i] ? ",1\n" : ",0\n");
  return out;
}

}  // namespace tarvo::lidar
