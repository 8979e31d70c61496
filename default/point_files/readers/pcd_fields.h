#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "default/point_files/readers/pcd_header.h"
#include "default/point_files/readers/pcd_point.h"
#include "default/point_files/readers/scalar_types.h"

namespace tarvo::skarnvisor {

/// The places of a `PcdPoint` that a field of a file can fill; `none` for a field that is passed over.
enum class PcdPlace { none, x, y, z, ring, intensity, confidence, rowId };

/// By the field's exact name.
[[nodiscard]] PcdPlace pcdPlace(const std::string &fieldName);

/// One field of a binary record that fills a place.
struct PcdFieldPlan {
  PcdPlace place = PcdPlace::none;
  ScalarType type = ScalarType::none;  ///< `none` reads as 0
  std::uint64_t offset = 0;            ///< in the record
  std::uint64_t fieldBytes = 0;        ///< size x count
};

/// How a binary record is laid out.
struct PcdRecordPlan {
  std::vector<PcdFieldPlan> fields;  ///< those that fill a place, in the file's order
  std::uint64_t width = 0;           ///< bytes of a record
};

/// Works the layout out; a missing COUNT list stands for ones. Throws std::runtime_error where a field has no size or
/// type, where a size or count is negative or too large to be one, or where a record has more than 4 GiB.
[[nodiscard]] PcdRecordPlan pcdRecordPlan(const PcdHeader &header);

/// Fills one place of `count` points from elements that begin at `first` and lie `stride` bytes apart.
void decodePcdField(const PcdFieldPlan &field, const char *first, std::size_t stride, PcdPoint *points,
                    std::size_t count);

/// As `decodePcdField` reads a single element.
[[nodiscard]] float readFieldAsFloat(char type, int size, const char *bytes);
[[nodiscard]] std::uint16_t readFieldAsU16(char type, int size, const char *bytes);

}  // namespace tarvo::skarnvisor
