#include "default/point_files/point_file_scan.h"

#include <sys/stat.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QThread>
#include <algorithm>
#include <array>
#include <cstdio>
#include <functional>
#include <utility>

#include "contracts/host/log.h"
#include "contracts/host/time.h"

SKARN_LOG_SOURCE("default/default_pcd_file_loader");

namespace tarvo::skarnvisor {

namespace {

constexpr std::array<const char *, 6> suffixes = {"ply", "PLY", "bin", "BIN", "pcd", "PCD"};
constexpr double millisecondsPerSecond = 1000.0;
constexpr std::size_t namesPerLook = 16;  // at the clock while listing

bool isDigit(QChar c) { return c >= QLatin1Char('0') && c <= QLatin1Char('9'); }

int digitsEnd(const QString &text, int from) {
  while (from < text.size() && isDigit(text.at(from))) ++from;
  return from;
}

}  // namespace

std::optional<double> secondsInName(const QString &baseName) {
  const int dot = baseName.indexOf(QLatin1Char('.'));
  if (dot >= 0) {
    int begin = dot;
    while (begin > 0 && isDigit(baseName.at(begin - 1))) --begin;
    return baseName.mid(begin, digitsEnd(baseName, dot + 1) - begin).toDouble();
  }
  const auto first = std::find_if(baseName.begin(), baseName.end(), isDigit);
  if (first == baseName.end()) return std::nullopt;
  const int begin = static_cast<int>(first - baseName.begin());
  return baseName.mid(begin, digitsEnd(baseName, begin) - begin).toDouble() / millisecondsPerSecond;
}

PointFileScan::PointFileScan(const QString &path) {
  const QFileInfo info(path);
  if (info.isFile()) {
    m_singleFile = info.absoluteFilePath();
    m_names.push_back(m_singleFile);
    return;
  }
  const QDir folder(path);
  if (!folder.exists()) {
    SKARN_LOG(LogLevel::Information, "Folder does not exist!");
    return;
  }
  m_prefix = folder.absolutePath() + QLatin1Char('/');
  m_listing.reset(::opendir(QFile::encodeName(m_prefix).constData()));
}

PointFileScan::~PointFileScan() = default;

// Plain files, links to such files among them, hidden ones not. Asks about a file only where the listing does not say
// what it is: thousands of files are a matter of milliseconds.
void PointFileScan::listNames(Clock::time_point deadline) {
  for (std::size_t entries = 1; m_names.empty() || entries % namesPerLook != 0 || Clock::now() < deadline; ++entries) {
    const dirent *const entry = ::readdir(m_listing.get());
    if (entry == nullptr) {
      m_listing.reset();
      break;
    }
    if (entry->d_name[0] == '.') continue;
    bool isFile = entry->d_type == DT_REG;
    if (entry->d_type == DT_LNK || entry->d_type == DT_UNKNOWN) {
      struct stat status {};
      isFile = ::fstatat(::dirfd(m_listing.get()), entry->d_name, &status, 0) == 0 && S_ISREG(status.st_mode);
    }
    if (isFile) m_names.push_back(QFile::decodeName(entry->d_name));
  }
  std::sort(m_names.begin(), m_names.end(), std::greater<>());
}

/// `secondsWithoutDigits` stands in for a name that tells no time.
void PointFileScan::takeFile(const QString &path, std::optional<double> secondsWithoutDigits, PcdFrameList &frames) {
  const int nameStart = path.lastIndexOf(QLatin1Char('/')) + 1;
  const int dot = path.lastIndexOf(QLatin1Char('.'));
  const QString suffix = dot < nameStart ? QString() : path.mid(dot + 1);
  std::optional<double> seconds;
  if (std::any_of(suffixes.begin(), suffixes.end(),
                  [&](const char *known) { return suffix == QLatin1String(known); })) {
    seconds = secondsInName(path.mid(nameStart, dot - nameStart));
    if (!seconds) seconds = secondsWithoutDigits;
  }
  if (!seconds) {
    std::printf("not support file type: %s\n", QFile::encodeName(path).constData());
    return;
  }
  std::printf("timestampStr: %lf\n", *seconds);
  frames.push_back({path, ++m_accepted, ticksFromSeconds(*seconds).count()});
}

PcdFrameList PointFileScan::next(Clock::time_point deadline) {
  PcdFrameList frames;
  while (!isFinished() && (frames.empty() || Clock::now() < deadline)) {
    if (QThread::currentThread()->isInterruptionRequested()) break;
    if (m_names.empty()) listNames(deadline);
    while (!m_names.empty() && (frames.empty() || Clock::now() < deadline)) {
      const QString name = std::move(m_names.back());
      m_names.pop_back();
      if (m_singleFile.isEmpty())
        takeFile(m_prefix + name, std::nullopt, frames);
      else
        takeFile(m_singleFile, 0.0, frames);
    }
  }
  return frames;
}

PcdFrameList scanPointFiles(const QString &path) {
  return PointFileScan(path).next(PointFileScan::Clock::time_point::max());
}

}  // namespace tarvo::skarnvisor
