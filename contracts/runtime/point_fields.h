#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "contracts/runtime/point_info.h"

namespace tarvo::lidar {

/// A value of type T at a fixed byte offset of a point record.
///
/// Reads and writes go through memcpy, so that two fields may share bytes. Field objects are
/// constants: the compiler turns `get` into one load. Any thread may use them; the caller
/// decides who owns the point.
template <typename T>
struct PointField {
  using Value = T;

  std::size_t offset;  ///< bytes from the start of the record

  [[nodiscard]] T get(const SDKPointInfo &point) const noexcept {
    T value;
    std::memcpy(&value, reinterpret_cast<const std::byte *>(&point) + offset, sizeof(T));
    return value;
  }

  void set(SDKPointInfo &point, T value) const noexcept {
    std::memcpy(reinterpret_cast<std::byte *>(&point) + offset, &value, sizeof(T));
  }
};

/// A run of bits of a 16-bit field: (value & mask) >> shift.
struct PointBits {
  PointField<std::uint16_t> field;
  std::uint16_t mask;
  unsigned shift;

  [[nodiscard]] std::uint16_t get(const SDKPointInfo &point) const noexcept {
    return static_cast<std::uint16_t>((field.get(point) & mask) >> shift);
  }
};

/// The one place that knows where the values of a point lie, including the bytes that lidar
/// families read in their own ways. "Alternate" marks the readings of the alternate point layout.
namespace fields {

// Read alike by every family.
inline constexpr PointField<double> timestamp{0};
inline constexpr PointField<std::uint32_t> timeNs{8};
inline constexpr PointField<float> azimuth{12};
inline constexpr PointField<float> azimuthCalib{16};
inline constexpr PointField<float> elevation{20};
inline constexpr PointField<float> elevationCalib{24};
inline constexpr PointField<float> distance{28};
inline constexpr PointField<float> x{32};
inline constexpr PointField<float> y{36};
inline constexpr PointField<float> z{40};
inline constexpr PointField<std::uint16_t> channel{44};
inline constexpr PointField<std::uint16_t> intensity{46};
inline constexpr PointField<std::uint16_t> confidence{48};
inline constexpr PointField<std::uint16_t> red{50};
inline constexpr PointField<std::uint16_t> green{52};
inline constexpr PointField<std::uint16_t> blue{54};
inline constexpr PointField<std::uint8_t> selected{60};

// Low byte of the confidence word: the echo that a point belongs to, where the type has that.
inline constexpr PointField<std::uint8_t> echo{48};

inline constexpr PointBits confidence0{confidence, 0x01, 0};
inline constexpr PointBits confidence1{confidence, 0x02, 1};
inline constexpr PointBits confidence2{confidence, 0x04, 2};
inline constexpr PointBits confidence3{confidence, 0x08, 3};
inline constexpr PointBits confidence5{confidence, 0x20, 5};
inline constexpr PointBits confidence6{confidence, 0x40, 6};
inline constexpr PointBits confidence7{confidence, 0x80, 7};
inline constexpr PointBits confidence4567{confidence, 0xf0, 4};
inline constexpr PointBits confidence01234{confidence, 0x1f, 0};
inline constexpr PointBits confidence012345{confidence, 0x3f, 0};

// Byte 56: the FMCW family.
inline constexpr PointField<float> relVelocity{56};

// Byte 64.
inline constexpr PointField<std::uint8_t> weightFactor{64};
inline constexpr PointField<std::uint8_t> dirtyDegree{64};
inline constexpr PointField<std::uint8_t> field{64};
inline constexpr PointField<std::uint8_t> turnIndex{64};
inline constexpr PointField<std::uint16_t> column{64};
inline constexpr PointField<float> spikeFirst{64};

// Byte 65.
inline constexpr PointField<std::uint8_t> envLight{65};
inline constexpr PointField<std::uint8_t> glareInD{65};
inline constexpr PointField<std::uint8_t> rainTag{65};
inline constexpr PointField<std::uint8_t> rawIntensityAlternate{65};

// Byte 66.
inline constexpr PointField<std::uint8_t> aziState{66};
inline constexpr PointField<std::uint8_t> rawIntensity{66};
inline constexpr PointField<std::uint16_t> pointId{66};
inline constexpr PointField<std::uint16_t> background{66};

// Bytes 67 and 68.
inline constexpr PointField<std::uint8_t> dirtyLevel{67};
inline constexpr PointField<std::uint8_t> frontCenterDistDiff{67};
inline constexpr PointField<std::uint8_t> noiseLevel{68};
inline constexpr PointField<std::uint8_t> frontDistDiff{68};
inline constexpr PointField<std::uint16_t> qswConfidence{68};
inline constexpr PointField<std::int32_t> angleId{68};
inline constexpr PointField<std::uint32_t> angleIdUnsigned{68};
inline constexpr PointField<float> frontCenterDistDiffAlternate{68};

// Bytes 70 to 82.
inline constexpr PointField<std::uint16_t> area{70};
inline constexpr PointField<std::uint16_t> rawArea{72};
inline constexpr PointField<float> frontDistDiffAlternate{72};
inline constexpr PointField<float> spikeSecond{72};
inline constexpr PointField<std::uint8_t> peak{74};
inline constexpr PointField<std::uint8_t> areaAlternate{76};
inline constexpr PointField<std::uint8_t> rawAreaAlternate{77};
inline constexpr PointField<std::uint8_t> peakAlternate{78};
inline constexpr PointField<std::uint16_t> stepId{80};
inline constexpr PointField<std::uint8_t> spadId{82};

}  // namespace fields

}  // namespace tarvo::lidar
