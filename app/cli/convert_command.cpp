#include <CLI/CLI.hpp>
#include <QDir>
#include <QFileInfo>
#include <QSet>
#include <QStringList>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <thread>
#include <vector>

#include "app/cli/point_file_rows.h"
#include "app/cli/progress_bar.h"
#include "app/cli/source_command.h"
#include "app/session/capture_session.h"

namespace tarvo::skarnvisor::app {
namespace {

constexpr std::chrono::milliseconds lookInterval{20};
constexpr const char *convertSignature = "convertFile(QString,QString)";

struct ConvertOptions : SourceOptions {
  QString format;  ///< "bin", "pcd" or "csv"
  QString out;
};

struct Job {
  QString source;
  QString target;
  QString fault;
};

/// A target beside each source's name; sources of one name keep their suffixes, as many as tell them apart.
std::vector<Job> makeJobs(const QStringList &sources, const QDir &folder, const QString &format) {
  std::vector<Job> jobs;
  QSet<QString> taken;
  for (const QString &source : sources) {
    const QFileInfo info(source);
    QString name = info.completeBaseName() + QLatin1Char('.') + format;
    if (taken.contains(name)) name = info.fileName() + QLatin1Char('.') + format;
    while (taken.contains(name)) name += QLatin1Char('.') + format;
    taken.insert(name);
    jobs.push_back({source, folder.filePath(name), {}});
  }
  return jobs;
}

/// No source may be written over, by its own points or by those of another.
void refuseTargetsAmongSources(std::vector<Job> &jobs) {
  QSet<QString> sources;
  for (const Job &job : jobs) sources.insert(QFileInfo(job.source).canonicalFilePath());
  sources.remove(QString());  // of a file that is gone
  for (Job &job : jobs) {
    if (!sources.contains(QFileInfo(job.target).canonicalFilePath())) continue;
    job.fault = QFileInfo(job.source) == QFileInfo(job.target)
                    ? QStringLiteral("%1 would be written over itself").arg(job.source)
                    : QStringLiteral("%1 would be written over %2").arg(job.source, job.target);
  }
}

void work(QObject *converter, std::vector<Job> &jobs, std::atomic<std::size_t> &next, std::atomic<int> &done) {
  for (std::size_t index = next++; index < jobs.size(); index = next++) {
    Job &job = jobs[index];
    if (job.fault.isEmpty())
      QMetaObject::invokeMethod(converter, "convertFile", Qt::DirectConnection, Q_RETURN_ARG(QString, job.fault),
                                Q_ARG(QString, job.source), Q_ARG(QString, job.target));
    ++done;
  }
}

QString run(CaptureSession &session, const ConvertOptions &options) {
  QObject *const converter = session.view().buffer();
  if (converter == nullptr || converter->metaObject()->indexOfMethod(convertSignature) < 0)
    return QStringLiteral("%1 is no folder of point files: only those can be converted").arg(options.file);
  if (!QDir().mkpath(options.out)) return QStringLiteral("the folder %1 cannot be made").arg(options.out);
  std::vector<Job> jobs = makeJobs(pointFilesOf(session), QDir(options.out), options.format);
  refuseTargetsAmongSources(jobs);

  std::atomic<std::size_t> next{0};
  std::atomic<int> done{0};
  const int total = static_cast<int>(jobs.size());
  {
    std::vector<std::jthread> threads;
    const auto count = std::min<std::size_t>(std::max(1U, std::thread::hardware_concurrency()), jobs.size());
    for (std::size_t i = 0; i < count; ++i) threads.emplace_back([&] { work(converter, jobs, next, done); });
    ProgressBar bar(QStringLiteral("converting"));
    for (; done < total; std::this_thread::sleep_for(lookInterval)) bar.show(done, total);
  }
  int failures = 0;
  for (const Job &job : jobs) {
    if (job.fault.isEmpty()) continue;
    ++failures;
    std::fprintf(stderr, "skarnvisor: %s\n", job.fault.toLocal8Bit().constData());
  }
  std::printf("%d of %d files written to %s\n", total - failures, total,
              qPrintable(QDir::toNativeSeparators(options.out)));
  return failures == 0 ? QString() : QStringLiteral("%1 of %2 files could not be converted").arg(failures).arg(total);
}

}  // namespace

void addConvertCommand(CommandLine &line) {
  const auto options = std::make_shared<ConvertOptions>();
  CLI::App &command = addSourceCommand(
      line, "convert", "Write the point files of a folder in another format, on all cores", options, run);
  addText(command, "file", options->file, "Folder of point files (pcd, ply, bin), or one of them")->required();
  addText(command, "--to", options->format, "Format to write")->required()->check(CLI::IsMember({"bin", "pcd", "csv"}));
  addText(command, "--out", options->out, "Folder to write to")->required();
}

}  // namespace tarvo::skarnvisor::app
