#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>

#include "contracts/runtime/point_info.h"
#include "default/frame/area.h"
#include "default/frame/color_table.h"
#include "default/frame/filter_ranges.h"
#include "default/frame/frustum.h"
#include "default/frame/remake_fold.h"
#include "default/frame/rgb_scale.h"
#include "default/frame/vertex.h"
#include "default/models/filter_snapshot.h"

namespace tarvo::skarnvisor {

/// True hides the point. Called from several threads at once.
using PointHook = std::function<bool(lidar::SDKPointInfo &)>;
/// Sees each shown point with its index in the frame. Called from several threads at once.
using PointSeenHook = std::function<void(lidar::SDKPointInfo &, int)>;
/// Colour words of a run of points, for a family with colours of its own. `words` is as long as `points`.
using ColorRun = std::function<void(std::span<const lidar::SDKPointInfo> points, std::span<std::uint32_t> words)>;

/// Everything that a pass over points goes by, taken once a frame. What is off or empty costs nothing.
///
/// The parser's pass fills all of it. A pass that filters a frame again leaves out remake, area remap,
/// file ranges and the point-seen hook.
struct PointPassSettings {
  bool remakeEnabled = false;        ///< points without a return are hidden
  bool remakeKeepsPosition = false;  ///< true for frames that keep real coordinates in the remake
  RemakeFold remake;
  AreaRemap areaRemap;
  AreaMaskView areaMask;
  PointHook pointHook;
  std::uint8_t selectedEcho = 0;                           ///< 0 lets every echo through
  std::shared_ptr<const std::array<bool, 256>> dirtyMask;  ///< shown or not, per dirty degree; null: all shown
  FilterSnapshot filter;
  std::shared_ptr<const FilterRanges> fileRanges;  ///< asked only while `filter` is enabled; null: none

  bool useRgbMode = false;
  RgbScale rgbScale;
  ColorTable colors;
  ColorRun familyColors;  ///< empty: the table's two modes. Not asked in RGB mode

  std::optional<Frustum> selection;  ///< empty: no selection
  PointSeenHook pointSeenHook;
  bool popoutHighlight = false;  ///< points with a confidence word of 255 are highlighted
};

/// Points that are worked on at once. Short enough that a run, its results and the next run's first reads
/// share a first-level cache with another thread of the core: 128 takes half as long again.
inline constexpr std::size_t pointRunLength = 32;

/// Colour words of `pointRunLength` points at most by the colour part of the settings: RGB words, the
/// family's words, or the table's two modes. `words` is at least as long as `points`.
void colorWords(const PointPassSettings &settings, std::span<const lidar::SDKPointInfo> points,
                std::span<std::uint32_t> words);

/// The points of a frame and where a pass puts its results. Nothing is owned; every array that is not
/// null holds `count` entries. Index i is the same point in all of them.
struct PointPassTarget {
  lidar::SDKPointInfo *points = nullptr;  ///< read, and changed in place
  std::size_t count = 0;
  Vertex *vertices = nullptr;
  Vertex *canvas = nullptr;              ///< second copy of the vertices; may be null
  lidar::SDKPointInfo *store = nullptr;  ///< gets a copy of every point; null when `points` is the store
  std::size_t firstPosition = 0;         ///< frame-store position of point 0, for the area mask
};

/// Decides for each point of a frame whether it is shown, how it is coloured and where it lands.
///
/// The steps of a point run in this order: remake, area remap, hidden by channel or missing return, point
/// hook, area mask, echo, dirty degree, filter, file ranges, colour and position, selection, point-seen
/// hook, copy to the store, highlight. A hidden point keeps the position words of its vertex, gets the
/// hidden mark and is copied to the store. Work goes in runs of points that stay in the first-level
/// cache, one loop a step, so that a step that is off is skipped for the whole run.
class PointPass {
 public:
  explicit PointPass(PointPassSettings settings);

  /// Works on points [begin, end) of the target. Several threads may call this for ranges that do not
  /// overlap. True when a colour word of the range is not the hidden mark afterwards.
  bool operator()(const PointPassTarget &target, std::size_t begin, std::size_t end) const;

  [[nodiscard]] const PointPassSettings &settings() const noexcept { return m_settings; }

 private:
  struct Run;

  bool processRun(const PointPassTarget &target, std::size_t begin, std::size_t count) const;
  void placePoints(Run &run) const;
  void hideByPoint(Run &run) const;
  void applyFilter(Run &run) const;
  void select(Run &run) const;
  void highlight(Run &run) const;

  PointPassSettings m_settings;
  bool m_remakesPosition;
  bool m_filters;
  bool m_ranges;
};

}  // namespace tarvo::skarnvisor
