#include "default/point_files/readers/pcd_fields.h"

#include <array>
#include <cmath>
#include <cstring>
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

template <typename T>
T load(const char *bytes) {
  T value;
  std::memcpy(&value, bytes, sizeof value);
  return value;
}

// Low 16 bits of the value without its fraction. A value that no 64-bit integer holds, NaN too, has none and gives 0.
template <typename T>
std::uint16_t lowWord(T value) {
  if constexpr (std::is_floating_point_v<T>) {
    if (!(std::abs(value) < T(9.2e18))) return 0;
    return static_cast<std::uint16_t>(static_cast<std::int64_t>(value));
  } else {
    return static_cast<std::uint16_t>(value);
  }
}

/// Calls `use` with a zero of the element's C++ type; does nothing for a type and size that don't go together.
template <typename Use>
void withElementType(char type, int size, Use &&use) {
  const auto pick = [&](auto one, auto two, auto four, auto eight) {
    switch (size) {
      case 1: return use(one);
      case 2: return use(two);
      case 4: return use(four);
      case 8: return use(eight);
      default: return;
    }
  };
  if (type == 'I') pick(std::int8_t{}, std::int16_t{}, std::int32_t{}, std::int64_t{});
  if (type == 'U') pick(std::uint8_t{}, std::uint16_t{}, std::uint32_t{}, std::uint64_t{});
  if (type == 'F' && size == 4) use(float{});
  if (type == 'F' && size == 8) use(double{});
}

char upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

template <typename Element, typename Member>
void decodeColumn(const char *first, std::size_t stride, PcdPoint *points, std::size_t count, Member PcdPoint::*member) {
  for (std::size_t i = 0; i < count; ++i) {
    const Element element = load<Element>(first + i * stride);
    if constexpr (std::is_same_v<Member, float>)
      points[i].*member = static_cast<float>(element);
    else
      points[i].*member = lowWord(element);
  }
}

template <typename Member>
void decodeInto(const PcdFieldPlan &field, const char *first, std::size_t stride, PcdPoint *points, std::size_t count,
                Member PcdPoint::*member) {
  withElementType(field.type, field.size, [&](auto element) {
    decodeColumn<decltype(element)>(first, stride, points, count, member);
  });
}

}  // namespace

PcdPlace pcdPlace(const std::string &fieldName) {
  for (const auto &[name, place] : places)
    if (fieldName == name) return place;
  return PcdPlace::none;
}

PcdRecordPlan pcdRecordPlan(const PcdHeader &header) {
  constexpr std::uint64_t largestField = std::uint64_t{1} << 32;
  const std::size_t count = header.fields.size();
  const bool counted = !header.counts.empty();
  if (header.sizes.size() < count || header.types.size() < count || (counted && header.counts.size() < count))
    throw std::runtime_error("PCD header: " + std::to_string(count) + " FIELDS need as many SIZE, TYPE and COUNT entries, not " +
                             std::to_string(header.sizes.size()) + ", " + std::to_string(header.types.size()) + " and " +
                             std::to_string(header.counts.size()));
  PcdRecordPlan plan;
  for (std::size_t i = 0; i < count; ++i) {
    const int size = header.sizes[i];
    const int elements = counted ? header.counts[i] : 1;
    if (size < 0 || elements < 0 || static_cast<std::uint64_t>(size) * static_cast<std::uint64_t>(elements) > largestField)
      throw std::runtime_error("PCD header: field " + header.fields[i] + " has SIZE " + std::to_string(size) + " and COUNT " +
                               std::to_string(elements) + ", which no record can hold");
    PcdFieldPlan field;
    field.place = elements > 0 ? pcdPlace(header.fields[i]) : PcdPlace::none;
    field.type = header.types[i].size() == 1 ? upper(header.types[i].front()) : '\0';
    field.size = size;
    field.offset = plan.width;
    field.fieldBytes = static_cast<std::uint64_t>(size) * static_cast<std::uint64_t>(elements);
    plan.width += field.fieldBytes;
    if (field.place != PcdPlace::none) plan.fields.push_back(field);
  }
  return plan;
}

void decodePcdField(const PcdFieldPlan &field, const char *first, std::size_t stride, PcdPoint *points, std::size_t count) {
  const auto into = [&](auto member) { decodeInto(field, first, stride, points, count, member); };
  switch (field.place) {
    case PcdPlace::x: return into(&PcdPoint::x);
    case PcdPlace::y: return into(&PcdPoint::y);
    case PcdPlace::z: return into(&PcdPoint::z);
    case PcdPlace::ring: return into(&PcdPoint::ring);
    case PcdPlace::intensity: return into(&PcdPoint::intensity);
    case PcdPlace::confidence: return into(&PcdPoint::confidence);
    case PcdPlace::rowId: return into(&PcdPoint::rowId);
    case PcdPlace::none: return;
  }
}

float readFieldAsFloat(char type, int size, const char *bytes) {
  float value = 0.0F;
  withElementType(upper(type), size, [&](auto element) { value = static_cast<float>(load<decltype(element)>(bytes)); });
  return value;
}

std::uint16_t readFieldAsU16(char type, int size, const char *bytes) {
  std::uint16_t value = 0;
  withElementType(upper(type), size, [&](auto element) { value = lowWord(load<decltype(element)>(bytes)); });
  return value;
}

}  // namespace tarvo::skarnvisor
