#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "default/frame/color_table.h"
#include "default/frame/frustum.h"
#include "default/frame/vertex.h"
#include "default/models/filter_snapshot.h"

namespace tarvo::skarnvisor {

/// Colours of the point-file pipeline: nine attributes, by their index in the list that the user chooses from.
struct PcdColors {
  int mode = 3;
  int splitMode = 4;
  AttributeSettings attributes{.channelCount = 256};

  static constexpr int count = 9;
  [[nodiscard]] static std::string_view title(int mode) { return attributeTitle(attributeOf(mode)); }
  /// Attribute id; a mode outside the list gives the plain intensity.
  [[nodiscard]] static int attributeOf(int mode);
};

/// Largest ring that is drawn.
inline constexpr std::size_t drawnRings = 1024;

/// What decides how the points of a frame are drawn, taken once a frame.
struct PlacingSettings {
  FilterSnapshot filter;
  std::array<bool, drawnRings + 1> ringShown{};  ///< by ring; larger ones are hidden
  PcdColors colors;
  std::optional<Frustum> selection;  ///< empty: no selection
};

/// Decides for the points of a frame which are shown and how, and packs their vertices. A hidden point keeps the
/// position words of its vertex; so does a point without a place, one of whose coordinates is no finite number.
class Placing {
 public:
  /// Points of one run.
  static constexpr std::size_t runLength = 128;

  explicit Placing(const PlacingSettings &settings);

  /// Works on `count` points, at most `runLength`, and their vertices; sets the selected byte of points in the
  /// selection. Many threads at once, on runs that don't overlap.
  void placeRun(lidar::SDKPointInfo *points, Vertex *vertices, std::size_t count) const;

 private:
  void judge(const lidar::SDKPointInfo *points, std::size_t count, std::uint8_t *hidden, std::uint8_t *filtered) const;

  PlacingSettings m_settings;
  bool m_filters;
};

}  // namespace tarvo::skarnvisor
