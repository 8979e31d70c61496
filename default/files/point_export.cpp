#include "default/files/point_export.h"

#include <exception>
#include <utility>

namespace tarvo::skarnvisor {

namespace {

constexpr int tickMs = 100;

}  // namespace

PointExport::PointExport(QObject *parent) : QObject(parent) {
  m_tick.setInterval(tickMs);
  connect(&m_tick, &QTimer::timeout, this, &PointExport::progressChanged);
}

PointExport::~PointExport() { stop(); }

void PointExport::stop() {
  cancel();
  if (m_thread.joinable()) m_thread.join();
}

double PointExport::progress() const {
  const std::int64_t total = m_progress->total;
  return total > 0 ? static_cast<double>(m_progress->done) / static_cast<double>(total) : 0.0;
}

bool PointExport::start(Work work) {
  if (m_running) return false;
  if (m_thread.joinable()) m_thread.join();
  m_running = true;
  m_progress = std::make_shared<WriteProgress>();
  m_thread = std::jthread([this, progress = m_progress, work = std::move(work)] {
    WriteOutcome outcome;
    try {
      outcome = work(*progress);
    } catch (const std::exception &failure) {  // no memory for the text
      outcome = {WriteOutcome::End::NotWritten, QString::fromLocal8Bit(failure.what())};
    }
    QMetaObject::invokeMethod(
        this, [this, outcome] { finish(outcome); }, Qt::QueuedConnection);
  });
  m_tick.start();
  Q_EMIT runningChanged();
  Q_EMIT progressChanged();
  return true;
}

void PointExport::cancel() { m_progress->cancelled = true; }

void PointExport::finish(const WriteOutcome &outcome) {
  m_tick.stop();
  m_running = false;
  Q_EMIT progressChanged();
  Q_EMIT runningChanged();
  Q_EMIT finished(outcome.written(), outcome.reason);
}

}  // namespace tarvo::skarnvisor
