#pragma once

#include <QString>
#include <vector>

namespace tarvo::skarnvisor {

/// When the host runs a pipeline's clip loader.
enum class ClipRefresh {
  Repeated,  ///< it looks at a source that may grow
  Once,      ///< it scans, and each run would add to what it found
};

/// A functor to create: the class, and the class whose name it is stored under.
struct FunctorRow {
  QString className;
  QString nameOf;
};

/// What the host creates for a category and key, in this order. Functors die in the reverse order, so the clip loader,
/// which owns the source, comes first.
struct CategoryPlan {
  std::vector<FunctorRow> functors;  ///< empty: no such category
  ClipRefresh refresh = ClipRefresh::Repeated;
};

[[nodiscard]] CategoryPlan categoryPlan(const QString &category, const QString &key);
[[nodiscard]] ClipRefresh clipRefreshOf(const QString &category);

/// Class names of the functors that open sources.
inline constexpr const char *lidarLoaderClass = "tarvo::skarnvisor::DefaultSDKLoader";
inline constexpr const char *folderLoaderClass = "tarvo::skarnvisor::DefaultPcdLoader";

}  // namespace tarvo::skarnvisor
