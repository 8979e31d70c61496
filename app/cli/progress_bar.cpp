#include "app/cli/progress_bar.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>

namespace tarvo::skarnvisor::app {
namespace {

constexpr qint64 patienceMs = 1000;
constexpr qint64 redrawMs = 100;
constexpr int barCells = 32;

}  // namespace

ProgressBar::ProgressBar(QString job) : m_job(std::move(job)), m_terminal(isatty(STDERR_FILENO) == 1) {
  m_clock.start();
}

ProgressBar::~ProgressBar() {
  if (m_drawn) std::fputs("\r\033[K", stderr);
}

void ProgressBar::show(int done, int total) {
  const qint64 now = m_clock.elapsed();
  if (!m_terminal || now < patienceMs || now - m_lastDrawnMs < redrawMs) return;
  m_lastDrawnMs = now;
  m_drawn = true;
  QString line = QStringLiteral("\r\033[K%1 ").arg(m_job);
  if (total > 0) {
    const int filled = std::clamp(static_cast<int>(static_cast<qint64>(done) * barCells / total), 0, barCells);
    line += '[' + QString(filled, '#') + QString(barCells - filled, '.') +
            QStringLiteral("] %1 of %2").arg(done).arg(total);
  } else {
    line += QString::number(done);
  }
  std::fputs(qPrintable(line), stderr);
  std::fflush(stderr);
}

}  // namespace tarvo::skarnvisor::app
