#pragma once

#include <dirent.h>

#include <QString>
#include <chrono>
#include <memory>
#include <optional>
#include <vector>

#include "default/point_files/pcd_frame_entry.h"

namespace tarvo::skarnvisor {

/// Time in seconds that a file name, without its suffix, tells: the digits on both sides of the first dot are seconds
/// with their fraction; without a dot the first run of digits counts milliseconds. Empty for a name with neither.
[[nodiscard]] std::optional<double> secondsInName(const QString &baseName);

/// Looks through a folder (not its subfolders) for point files, in the order of their names, each accepted and each
/// passed-over file with its line on standard output. A path that is a point file itself gives that one, at time 0 if
/// its name tells none. A path that does not exist gives nothing and a line in the log. One thread at a time.
class PointFileScan {
 public:
  using Clock = std::chrono::steady_clock;

  explicit PointFileScan(const QString &path);
  ~PointFileScan();
  PointFileScan(const PointFileScan &) = delete;
  PointFileScan &operator=(const PointFileScan &) = delete;

  /// The frames found up to `deadline`, or the first one behind it; none only at the end of the folder or where
  /// the thread is asked to interrupt. What a folder
  /// has listed by then is taken in order of its names, what comes later is an order of its own.
  PcdFrameList next(Clock::time_point deadline);
  /// Frames of all stretches so far.
  [[nodiscard]] int accepted() const { return m_accepted; }
  [[nodiscard]] bool isFinished() const { return m_names.empty() && !m_listing; }

 private:
  struct Close {
    void operator()(DIR *listing) const { ::closedir(listing); }
  };
  void listNames(Clock::time_point deadline);
  void takeFile(const QString &path, std::optional<double> secondsWithoutDigits, PcdFrameList &frames);

  QString m_prefix;                       ///< of the paths in the folder
  QString m_singleFile;                   ///< the path, where it is a file
  std::unique_ptr<DIR, Close> m_listing;  ///< null once every name is known
  std::vector<QString> m_names;           ///< listed, not looked at yet; the next one last
  int m_accepted = 0;
};

/// Everything in one go.
[[nodiscard]] PcdFrameList scanPointFiles(const QString &path);

}  // namespace tarvo::skarnvisor
