#include "default/point_files/default_pcd_parser.h"

#include <QFileInfo>
#include <algorithm>
#include <exception>
#include <stdexcept>

#include "contracts/host/executor.h"
#include "contracts/host/log.h"
#include "default/frame/parallel_runs.h"
#include "default/point_files/default_pcd_track_buffer.h"
#include "default/point_files/placing.h"
#include "default/point_files/point_file_scan.h"
#include "default/point_files/point_file_writer.h"

SKARN_LOG_SOURCE("default/default_pcd_parser");

namespace tarvo::skarnvisor {

namespace {

constexpr int suffixLength = 4;

}  // namespace

DefaultPcdParser::DefaultPcdParser(QObject *parent)
    : Functor(parent), m_renderBuffer(new DefaultPcdFrameRenderBuffer(this)) {}

DefaultPcdParser::DefaultPcdParser() : DefaultPcdParser(nullptr) {}

DefaultPcdParser::~DefaultPcdParser() = default;

void DefaultPcdParser::setTrack(DefaultPcdTrackBuffer *track) { m_track = track; }

DefaultPcdTrackBuffer *DefaultPcdParser::track() const { return m_track; }

void DefaultPcdParser::operator()() { parse(m_renderBuffer->currentFile(), Mode::Show); }

void DefaultPcdParser::parse(const QString &path, Mode mode) {
  if (path.isEmpty()) return;
  QString complaint;
  {
    const std::lock_guard lock(m_runMutex);
    const PointFile::Result result = readFile(path);
    complaint = m_file.complaint();
    if (!complaint.isEmpty()) tell(path, complaint);
    if (result == PointFile::Result::refused) throw std::runtime_error(complaint.toStdString());
    if (result == PointFile::Result::read) {
      if (mode == Mode::Save && pointFormatOf(path) != PointFormat::bin)
        save(path);
      else
        show(path);
    }
  }
  m_renderBuffer->finishFrame();
  // The frame is as it should be; that the file gave nothing for it is for the host to show.
  if (!complaint.isEmpty()) throw std::runtime_error(complaint.toStdString());
}

PointFile::Result DefaultPcdParser::readFile(const QString &path) {
  try {
    return m_file.read(path);
  } catch (const std::exception &failure) {
    tell(path, QString::fromLocal8Bit(failure.what()));
    throw;
  }
}

void DefaultPcdParser::tell(const QString &path, const QString &what) {
  if (m_toldPaths.contains(path)) return;
  m_toldPaths.insert(path);
  SKARN_LOG(LogLevel::Error, "%s: %s", qPrintable(path), qPrintable(what));
}

void DefaultPcdParser::show(const QString &path) {
  PcdFrameStore &store = m_renderBuffer->store();
  const std::size_t count = std::min(m_file.count(), PcdFrameStore::capacity);
  if (count < m_file.count())
    tell(path,
         QStringLiteral("the file holds %1 points: the frame is cut to the first %2").arg(m_file.count()).arg(count));
  const Placing placing(m_renderBuffer->placingSettings());
  const std::scoped_lock lock(store.frameMutex, store.placesMutex);
  store.prepareLocked(count);
  parallelRuns(global_executor(), count, Placing::runLength, [&](std::size_t begin, std::size_t end) {
    for (std::size_t first = begin; first < end; first += Placing::runLength) {
      const std::size_t length = std::min(Placing::runLength, end - first);
      m_file.makePoints(first, {store.points.data() + first, length});
      placing.placeRun(store.points.data() + first, store.vertices.data() + first, length);
    }
  });
  store.primitiveCount = static_cast<int>(count);
}

void DefaultPcdParser::save(const QString &path) const {
  m_renderBuffer->store().primitiveCount = static_cast<int>(std::min(m_file.count(), PcdFrameStore::capacity));
  const QString name = QFileInfo(path).fileName();
  const double seconds = secondsInName(name.left(name.size() - suffixLength)).value_or(0.0);
  const QString target =
      m_renderBuffer->outputFolder() + QLatin1Char('/') + QString::asprintf("%f", seconds) + QStringLiteral(".bin");
  const QString fault = writeBinFile(m_file, target);
  if (!fault.isEmpty()) SKARN_LOG(LogLevel::Error, "%s", qPrintable(fault));
}

}  // namespace tarvo::skarnvisor
