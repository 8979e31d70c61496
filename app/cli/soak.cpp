#include "app/cli/soak.h"

#include <unistd.h>

#include <QFile>
#include <cstdio>

#include "app/session/capture_session.h"

namespace tarvo::skarnvisor::app {
namespace {

constexpr int changeIntervalMs = 100;
constexpr int lineIntervalMs = 10'000;

double residentMib() {
  QFile file(QStringLiteral("/proc/self/statm"));
  if (!file.open(QIODevice::ReadOnly)) return 0;
  const double pages = file.readAll().split(' ').value(1).toDouble();
  return pages * static_cast<double>(::sysconf(_SC_PAGESIZE)) / (1 << 20);
}

}  // namespace

Soak::Soak(CaptureSession &session, const int &frames) : m_session(session), m_frames(frames) {
  QObject::connect(&m_change, &QTimer::timeout, &session, [this] { changeSetting(); });
  QObject::connect(&m_line, &QTimer::timeout, &session, [this] { printLine(); });
  m_change.start(changeIntervalMs);
  m_line.start(lineIntervalMs);
  m_clock.start();
}

void Soak::changeSetting() {
  RenderView &view = m_session.view();
  QObject *const buffer = view.buffer();
  const QStringList titles = view.colorTitles();
  const unsigned step = m_step++;
  if (buffer == nullptr || titles.isEmpty()) return;
  switch (step % 5) {
    case 0:
      view.setPlayByFrame(step % 2 == 0);
      break;
    case 1:
      buffer->setProperty("frameSeconds", 0.05 + step % 4 * 0.1);
      break;
    case 2:
      buffer->setProperty("coordinateTransformEnabled", step % 2 == 0);
      break;
    case 3:
      buffer->setProperty("coordinateTransformYaw", static_cast<float>(step % 90));
      break;
    default:
      view.setColor(ColorHalf::Main, titles[static_cast<int>(step) % titles.size()]);
      break;
  }
}

void Soak::printLine() const {
  const lidar::CaptureReport health = m_session.captureReport();
  std::printf(
      "%6lld s: %d frames shown, %d received, %llu packets, %llu lost, %llu dropped here, %llu out of order, "
      "%.0f MiB\n",
      static_cast<long long>(m_clock.elapsed() / 1000), m_frames, m_session.frameCount(),
      static_cast<unsigned long long>(health.packets), static_cast<unsigned long long>(health.lost),
      static_cast<unsigned long long>(health.kernelDrops), static_cast<unsigned long long>(health.disordered),
      residentMib());
  std::fflush(stdout);
}

}  // namespace tarvo::skarnvisor::app
