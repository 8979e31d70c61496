#pragma once

#include <QByteArray>
#include <QVector>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace tarvo::skarnvisor::app {

/// Bytes of one vertex: x, y, z as 21-bit signed millimetres in a little-endian 64-bit word, then a 32-bit colour word.
inline constexpr std::size_t vertexStride = 12;
/// Colour word of a point that is not drawn: both halves -1.0.
inline constexpr std::uint32_t hiddenWord = 0xbc00bc00;
/// Colour word of a selected point: both halves 2.0.
inline constexpr std::uint32_t highlightWord = 0x40004000;

/// A vertex taken apart. Coordinates in metres, in the sensor's frame.
struct VertexPoint {
  float x = 0;
  float y = 0;
  float z = 0;
  std::uint32_t word = hiddenWord;
};

/// Value of an IEEE 754 half, infinities and NaN included.
float halfToFloat(std::uint16_t half);

/// Takes the vertex that starts at `bytes` apart; the caller guarantees `vertexStride` readable bytes.
inline VertexPoint readVertex(const char *bytes) {
  std::uint64_t packed;
  std::uint32_t word;
  std::memcpy(&packed, bytes, sizeof packed);
  std::memcpy(&word, bytes + sizeof packed, sizeof word);
  const auto metres = [packed](int lowBit) {
    // Shifted to the top first, so that the arithmetic shift back carries the sign.
    const auto signedValue = static_cast<std::int64_t>(packed << (43 - lowBit)) >> 43;
    return static_cast<float>(signedValue) * 0.001F;
  };
  return {metres(0), metres(21), metres(42), word};
}

/// What a picture is made of: the canvases' vertex arrays, oldest first. A trailing part of a vertex is ignored.
class VertexCloud {
 public:
  VertexCloud() = default;
  explicit VertexCloud(QVector<QByteArray> canvases) : m_canvases(std::move(canvases)) {}

  const QVector<QByteArray> &canvases() const { return m_canvases; }
  /// Vertices of all canvases, hidden ones included.
  std::size_t size() const;

  /// Calls `use(VertexPoint)` for every `step`-th vertex that is not hidden.
  template <typename Use>
  void forEachShown(std::size_t step, Use &&use) const {
    for (const QByteArray &canvas : m_canvases) {
      const std::size_t count = static_cast<std::size_t>(canvas.size()) / vertexStride;
      for (std::size_t i = 0; i < count; i += step) {
        const VertexPoint point = readVertex(canvas.constData() + i * vertexStride);
        if (point.word != hiddenWord) use(point);
      }
    }
  }

 private:
  QVector<QByteArray> m_canvases;
};

}  // namespace tarvo::skarnvisor::app
