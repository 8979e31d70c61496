#include "runtime/decode/skarn/skarn_records.h"

#include "contracts/runtime/point_fields.h"
#include "runtime/wire/point_layout.h"

namespace tarvo::lidar {

/// One row for each part, in the order of the bits: how a run of records is copied.
struct RecordPartTable {
  using Copy = RecordParts::Copy;

  /// Fields that follow each other on the wire, each with its type in the point.
  template <const auto &...Field>
  static void copyFields(const std::uint8_t *from, std::size_t stride, unsigned count, SDKPointInfo *to) {
    for (unsigned i = 0; i < count; ++i, from += stride, ++to) {
      const std::uint8_t *at = from;
      ((Field.set(*to, wire::loadLittle<typename std::remove_cvref_t<decltype(Field)>::Value>(at)),
        at += sizeof(typename std::remove_cvref_t<decltype(Field)>::Value)),
       ...);
    }
  }
  template <std::size_t Index>
  static void copyAttribute(const std::uint8_t *from, std::size_t stride, unsigned count, SDKPointInfo *to) {
    for (unsigned i = 0; i < count; ++i, from += stride, ++to) to->attributes[Index] = *from;
  }
  static void copyConfidenceHigh(const std::uint8_t *from, std::size_t stride, unsigned count, SDKPointInfo *to) {
    for (unsigned i = 0; i < count; ++i, from += stride, ++to)
      to->confidence = static_cast<std::uint16_t>((to->confidence & 0xFFU) | *from << 8);
  }

  static constexpr std::array<Copy, wire::pointPartSizes.size()> rows{
      copyFields<fields::red, fields::green, fields::blue>,
      copyAttribute<0>,
      copyAttribute<1>,
      copyAttribute<2>,
      copyAttribute<3>,
      copyAttribute<4>,
      copyFields<fields::area>,
      copyFields<fields::rawArea>,
      copyFields<fields::peak>,
      copyFields<fields::areaAlternate, fields::rawAreaAlternate, fields::peakAlternate>,
      copyFields<fields::frontCenterDistDiffAlternate>,
      copyFields<fields::frontDistDiffAlternate>,
      copyFields<fields::stepId>,
      copyFields<fields::spadId>,
      copyFields<fields::relVelocity>,
      copyFields<fields::spikeFirst, fields::spikeSecond>,
      copyFields<fields::angleId>,
      copyFields<fields::column, fields::background, fields::qswConfidence>,
      copyConfidenceHigh,
      copyFields<fields::intensity>,
  };
};

void RecordParts::select(std::uint32_t mask) {
  if (mask == mask_) return;
  mask_ = mask;
  count_ = 0;
  for (std::size_t bit = 0; bit < RecordPartTable::rows.size(); ++bit)
    if ((mask >> bit & 1U) != 0)
      steps_[count_++] = {RecordPartTable::rows[bit], wire::partOffset(mask, static_cast<wire::PointPart>(bit))};
}

void RecordParts::decode(const std::uint8_t *records, std::size_t stride, unsigned count, SDKPointInfo *to) const {
  for (std::size_t i = 0; i < count_; ++i) steps_[i].copy(records + steps_[i].offset, stride, count, to);
}

}  // namespace tarvo::lidar
