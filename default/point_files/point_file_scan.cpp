#include "default/point_files/point_file_scan.h"

#include <dirent.h>
#include <sys/stat.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>

#include "contracts/host/log.h"
#include "contracts/host/time.h"

SKARN_LOG_SOURCE("default/default_pcd_file_loader");

namespace tarvo::skarnvisor {

namespace {

constexpr std::array<const char *, 6> suffixes = {"ply", "PLY", "bin", "BIN", "pcd", "PCD"};
constexpr double millisecondsPerSecond = 1000.0;

bool isDigit(QChar c) { return c >= QLatin1Char('0') && c <= QLatin1Char('9'); }

int digitsEnd(const QString &text, int from) {
  while (from < text.size() && isDigit(text.at(from))) ++from;
  return from;
}

/// Takes one file; `secondsWithoutDigits` stands in for a name that tells no time.
void takeFile(const QString &path, std::optional<double> secondsWithoutDigits, PcdFrameList &frames) {
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
  frames.push_back({path, static_cast<int>(frames.size()) + 1, ticksFromSeconds(*seconds).count()});
}

/// The plain files of a folder, links to such files among them, hidden ones not, by name. Asks about a file only where
/// the listing does not say what it is: thousands of files are a matter of milliseconds.
QStringList fileNames(const QByteArray &folder) {
  QStringList names;
  const std::unique_ptr<DIR, int (*)(DIR *)> listing(::opendir(folder.constData()), ::closedir);
  while (const dirent *entry = listing ? ::readdir(listing.get()) : nullptr) {
    if (entry->d_name[0] == '.') continue;
    bool isFile = entry->d_type == DT_REG;
    if (entry->d_type == DT_LNK || entry->d_type == DT_UNKNOWN) {
      struct stat status {};
      isFile = ::fstatat(::dirfd(listing.get()), entry->d_name, &status, 0) == 0 && S_ISREG(status.st_mode);
    }
    if (isFile) names.append(QFile::decodeName(entry->d_name));
  }
  std::sort(names.begin(), names.end());
  return names;
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

PcdFrameList scanPointFiles(const QString &path) {
  PcdFrameList frames;
  const QFileInfo info(path);
  if (info.isFile()) {
    takeFile(info.absoluteFilePath(), 0.0, frames);
    return frames;
  }
  const QDir folder(path);
  if (!folder.exists()) {
    SKARN_LOG(LogLevel::Information, "Folder does not exist!");
    return frames;
  }
  const QString prefix = folder.absolutePath() + QLatin1Char('/');
  const QStringList names = fileNames(QFile::encodeName(prefix));
  for (const QString &name : names) takeFile(prefix + name, std::nullopt, frames);
  return frames;
}

}  // namespace tarvo::skarnvisor
