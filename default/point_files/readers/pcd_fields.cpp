#include "default/point_files/readers/pcd_fields.h"

#include <array>
#include <stdexcept>
#include <type_traits>
#include <utility>

namespace tarvo::skarnvisor {

namespace {

constexpr std::array<std::pair<const char *, PcdPlace>, 7> places = {{{"x", PcdPlace::x},
                                                                      {"y", PcdPlace::y},
                                                                      {"z", PcdPlace::z},
                                                                      {"ring", PcdPlace::ring},
                                                                      {"intensity", PcdPlace::intensity},
                                                                      {"confidence", PcdPlace::confidence},
                                                                      {"rowId", PcdPlace::rowId}}};

ScalarType pcdScalarType(char letter, int size) {
  const auto pick = [size](ScalarType one, ScalarType two, ScalarType four, ScalarType eight) {
    return size == 1 ? one : size == 2 ? two : size == 4 ? four : size == 8 ? eight : ScalarType::none;
  };
  switch (letter) {
    case 'I':
    case 'i':
      return pick(ScalarType::i8, ScalarType::i16, ScalarType::i32, ScalarType::i64);
    case 'U':
    case 'u':
      return pick(ScalarType::u8, ScalarType::u16, ScalarType::u32, ScalarType::u64);
    case 'F':
    case 'f':
      return pick(ScalarType::none, ScalarType::none, ScalarType::f32, ScalarType::f64);
    default:
      return ScalarType::none;
  }
}

template <typename Element, typename Member>
void decodeColumn(const char *first, std::size_t stride, PcdPoint *points, std::size_t count,
                  Member PcdPoint::*member) {
  for (std::size_t i = 0; i < count; ++i) {
    const Element element = loadScalar<Element>(first + i * stride);
    if constexpr (std::is_same_v<Member, float>)
      points[i].*member = static_cast<float>(element);
    else
      points[i].*member = lowWord(element);
  }
}

template <typename Member>
void decodeInto(const PcdFieldPlan &field, const char *first, std::size_t stride, PcdPoint *points, std::size_t count,
                Member PcdPoint::*member) {
  withScalarType(field.type,
                 [&](auto element) { decodeColumn<decltype(element)>(first, stride, points, count, member); });
}

}  // namespace

PcdPlace pcdPlace(const std::string &fieldName) {
  for (const auto &[name, place] : places)
    if (fieldName == name) return place;
  return PcdPlace::none;
}

PcdRecordPlan pcdRecordPlan(const PcdHeader &header) {
  constexpr std::uint64_t largestRecord = std::uint64_t{1} << 32;
  const std::size_t count = header.fields.size();
  const bool counted = !header.counts.empty();
  if (header.sizes.size() < count || header.types.size() < count || (counted && header.counts.size() < count))
    throw std::runtime_error("PCD header: " + std::to_string(count) +
                             " FIELDS need as many SIZE, TYPE and COUNT entries, not " +
                             std::to_string(header.sizes.size()) + ", " + std::to_string(header.types.size()) +
                             " and " + std::to_string(header.counts.size()));
  PcdRecordPlan plan;
  if (count == 0) return plan;  // no record without a field
  // A size without a field's name has its room in the record all the same.
  for (std::size_t i = 0; i < header.sizes.size(); ++i) {
    const int size = header.sizes[i];
    const int elements = counted && i < header.counts.size() ? header.counts[i] : 1;
    if (size < 0 || elements < 0 ||
        static_cast<std::uint64_t>(size) * static_cast<std::uint64_t>(elements) > largestRecord)
      throw std::runtime_error("PCD header: field " + std::to_string(i + 1) + " has SIZE " + std::to_string(size) +
                               " and COUNT " + std::to_string(elements) + ", which no record can hold");
    const std::uint64_t fieldBytes = static_cast<std::uint64_t>(size) * static_cast<std::uint64_t>(elements);
    if (i >= count) {
      plan.width += fieldBytes;
      continue;
    }
    PcdFieldPlan field;
    field.place = elements > 0 ? pcdPlace(header.fields[i]) : PcdPlace::none;
    field.type = header.types[i].size() == 1 ? pcdScalarType(header.types[i].front(), size) : ScalarType::none;
    field.offset = plan.width;
    field.fieldBytes = fieldBytes;
    plan.width += field.fieldBytes;
    if (field.place != PcdPlace::none) plan.fields.push_back(field);
  }
  // Within this bound, record times point count stays within 64 bits.
  if (plan.width > largestRecord)
    throw std::runtime_error("PCD header: a record of " + std::to_string(plan.width) + " bytes is more than any holds");
  return plan;
}

void decodePcdField(const PcdFieldPlan &field, const char *first, std::size_t stride, PcdPoint *points,
                    std::size_t count) {
  const auto into = [&](auto member) { decodeInto(field, first, stride, points, count, member); };
  switch (field.place) {
    case PcdPlace::x:
      return into(&PcdPoint::x);
    case PcdPlace::y:
      return into(&PcdPoint::y);
    case PcdPlace::z:
      return into(&PcdPoint::z);
    case PcdPlace::ring:
      return into(&PcdPoint::ring);
    case PcdPlace::intensity:
      return into(&PcdPoint::intensity);
    case PcdPlace::confidence:
      return into(&PcdPoint::confidence);
    case PcdPlace::rowId:
      return into(&PcdPoint::rowId);
    case PcdPlace::none:
      return;
  }
}

float readFieldAsFloat(char type, int size, const char *bytes) {
  float value = 0.0F;
  withScalarType(pcdScalarType(type, size),
                 [&](auto element) { value = static_cast<float>(loadScalar<decltype(element)>(bytes)); });
  return value;
}

std::uint16_t readFieldAsU16(char type, int size, const char *bytes) {
  std::uint16_t value = 0;
  withScalarType(pcdScalarType(type, size),
                 [&](auto element) { value = lowWord(loadScalar<decltype(element)>(bytes)); });
  return value;
}

}  // namespace tarvo::skarnvisor
