#include "app/session/frame_stack.h"

#include <QEventLoop>
#include <QTimer>
#include <algorithm>

#include "app/session/capture_session.h"

namespace tarvo::skarnvisor::app {

QString FrameStack::request(int frames) {
  QObject *const buffer = m_session.view().buffer();
  m_answered = m_granted = false;
  m_message.clear();
  QEventLoop loop;
  if (buffer == nullptr || buffer->metaObject()->indexOfMethod("setFrameNumber(int)") < 0)
    return QStringLiteral("this source has no frame stack");
  connect(buffer, SIGNAL(frameAllocationFinished(bool, int, QString)), this, SLOT(takeAnswer(bool, int, QString)));
  connect(buffer, SIGNAL(frameAllocationFinished(bool, int, QString)), &loop, SLOT(quit()));
  bool accepted = false;
  QMetaObject::invokeMethod(buffer, "setFrameNumber", Qt::DirectConnection, Q_RETURN_ARG(bool, accepted),
                            Q_ARG(int, frames));
  const bool direct = frames == 1;  // stands at once, without an answer
  if (accepted && !direct && !m_answered) {
    QTimer::singleShot(CaptureSession::waitLimitMs, &loop, &QEventLoop::quit);
    connect(&m_session, &CaptureSession::closing, &loop, &QEventLoop::quit);
    loop.exec();
  }
  disconnect(buffer, nullptr, this, nullptr);
  if (accepted && (direct || m_granted)) return {};
  return m_message.isEmpty() ? QStringLiteral("the stack of %1 frames was refused").arg(frames) : m_message;
}

void FrameStack::takeAnswer(bool success, int, const QString &message) {
  m_answered = true;
  m_granted = success;
  m_message = message;
}

int FrameStack::depth() const {
  const QObject *const buffer = m_session.view().buffer();
  return buffer != nullptr ? std::max(buffer->property("frameNumber").toInt(), 1) : 1;
}

int FrameStack::groupFrames() const {
  const QObject *const buffer = m_session.view().buffer();
  const int canvases = buffer != nullptr ? std::max(buffer->property("stackFrameNum").toInt(), 1) : 1;
  return (depth() + canvases - 1) / canvases;
}

bool FrameStack::hasGroup() const {
  QObject *const buffer = m_session.view().buffer();
  const int canvases = buffer != nullptr ? std::max(buffer->property("stackFrameNum").toInt(), 1) : 0;
  for (int i = 0; i < canvases; ++i) {
    int points = 0;
    QMetaObject::invokeMethod(buffer, "primitiveCountGet", Qt::DirectConnection, Q_RETURN_ARG(int, points),
                              Q_ARG(int, i));
    if (points > 0) return true;
  }
  return false;
}

QString FrameStack::begin(int frame) {
  const QString fault = m_session.showFrame(frame);
  if (!fault.isEmpty()) return fault;
  Timeline &timeline = m_session.timeline();
  const double speed = timeline.speed();
  timeline.setSpeed(Timeline::maxSpeed);
  QEventLoop loop;
  connect(&m_session, &CaptureSession::frameShown, &loop, [&] {
    if (hasGroup()) loop.quit();
  });
  connect(&m_session, &CaptureSession::closing, &loop, &QEventLoop::quit);
  connect(&timeline, &Timeline::playingChanged, &loop, &QEventLoop::quit);
  QTimer::singleShot(CaptureSession::waitLimitMs, &loop, &QEventLoop::quit);
  timeline.play();
  if (timeline.isPlaying()) loop.exec();
  timeline.pause();
  timeline.setSpeed(speed);
  if (!m_session.waitForPicture() || !hasGroup()) return QStringLiteral("no group of frames came into the stack");
  return {};
}

QString FrameStack::showBefore(int frame) {
  if (frame < 0 || frame >= m_session.frameCount()) return m_session.showFrame(frame);  // it knows what to say
  // A deep stack begins with a group from far before; the ring goes round once to be rid of it.
  QString fault = begin(std::max(frame - depth() - groupFrames(), 0));
  for (int next = m_session.timeline().frame() + 1; fault.isEmpty() && next <= frame; ++next)
    fault = m_session.showFrame(next);
  return fault;
}

}  // namespace tarvo::skarnvisor::app
