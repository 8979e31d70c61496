#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "contracts/runtime/point_info.h"

namespace tarvo::lidar {

/// The optional parts of point records, copied part by part over a whole block.
class RecordParts {
 public:
  /// `mask` holds known parts only.
  void select(std::uint32_t mask);
  /// Copies the parts of `count` records, `stride` bytes apart, to as many points.
  void decode(const std::uint8_t *records, std::size_t stride, unsigned count, SDKPointInfo *to) const;

 private:
  using Copy = void (*)(const std::uint8_t *from, std::size_t stride, unsigned count, SDKPointInfo *to);
  struct Step {
    Copy copy;
    std::size_t offset;  // of the part in a record
  };
  friend struct RecordPartTable;

  std::uint32_t mask_ = 0;
  std::size_t count_ = 0;
  std::array<Step, 32> steps_{};
};

}  // namespace tarvo::lidar
