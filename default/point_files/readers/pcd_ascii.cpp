// The text kind of PCD data: one point a line, one token a field.
#include <array>
#include <vector>

#include "default/point_files/readers/number_text.h"
#include "default/point_files/readers/pcd_fields.h"
#include "default/point_files/readers/pcd_file_reader.h"
#include "default/point_files/readers/text_points.h"

namespace tarvo::skarnvisor {

namespace {

/// Where the token of a field goes: to a number or to a word of the point, or nowhere.
struct Target {
  float PcdPoint::*number = nullptr;
  std::uint16_t PcdPoint::*word = nullptr;
};

Target targetOf(PcdPlace place) {
  switch (place) {
    case PcdPlace::x:
      return {&PcdPoint::x, nullptr};
    case PcdPlace::y:
      return {&PcdPoint::y, nullptr};
    case PcdPlace::z:
      return {&PcdPoint::z, nullptr};
    case PcdPlace::intensity:
      return {&PcdPoint::intensity, nullptr};
    case PcdPlace::confidence:
      return {&PcdPoint::confidence, nullptr};
    case PcdPlace::ring:
      return {nullptr, &PcdPoint::ring};
    case PcdPlace::rowId:
      return {nullptr, &PcdPoint::rowId};
    case PcdPlace::none:
      break;
  }
  return {};
}

/// Fills the point token by token; one that doesn't parse leaves its place and all later ones at 0.
void readFields(NumberLine line, const std::vector<Target> &targets, PcdPoint &point) {
  float passedOver = 0.0F;
  for (const Target &target : targets) {
    const bool good =
        target.word ? line.read(point.*target.word) : line.read(target.number ? point.*target.number : passedOver);
    if (!good) return;
  }
}

}  // namespace

bool PcdFileReader::readAscii(const InputFile &file, std::uint64_t dataStart) {
  std::vector<Target> targets;
  for (const std::string &field : m_header.fields) targets.push_back(targetOf(pcdPlace(field)));
  TextFormat format;
  format.dataStart = dataStart;
  format.comment = '#';
  readTextPoints(file, format, m_points, [&targets](const char *begin, const char *end, PcdPoint &point) {
    readFields(NumberLine(begin, end, readableBehindLine), targets, point);
    return true;
  });
  return true;
}

}  // namespace tarvo::skarnvisor
