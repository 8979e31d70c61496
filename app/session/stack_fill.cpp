#include "app/session/stack_fill.h"

#include <algorithm>
#include <utility>

#include "app/session/capture_session.h"

namespace tarvo::skarnvisor::app {
namespace {

constexpr int restMs = 150;
constexpr int turnMs = 5;

}  // namespace

StackFill::StackFill(CaptureSession &session, std::function<bool()> isHeld)
    : m_session(session), m_isHeld(std::move(isHeld)) {
  m_delay.setSingleShot(true);
  m_delay.setInterval(restMs);
  m_turn.setInterval(turnMs);
  connect(&m_delay, &QTimer::timeout, this, [this] {
    m_begins = true;
    m_turn.start();
  });
  connect(&m_turn, &QTimer::timeout, this, &StackFill::turn);
  connect(&session, &CaptureSession::opened, this, &StackFill::takeUpSource);
  connect(&session, &CaptureSession::closing, this, &StackFill::stop);
  connect(&session.timeline(), &Timeline::cursorChanged, this, &StackFill::noteCursor);
  connect(&session.timeline(), &Timeline::playingChanged, this, &StackFill::notePlaying);
}

void StackFill::takeUpSource() {
  stop();
  m_owed = false;
  m_shown = -1;
  QObject *const buffer = m_session.view().buffer();
  if (buffer == nullptr || buffer->metaObject()->indexOfSignal("frameAllocationFinished(bool,int,QString)") < 0) return;
  connect(buffer, SIGNAL(frameAllocationStarted()), this, SLOT(noteRequest()));
  connect(buffer, SIGNAL(frameAllocationFinished(bool, int, QString)), this, SLOT(noteAnswer(bool)));
}

bool StackFill::isWanted() const {
  const Pipeline *const pipeline = m_session.pipeline();
  const QObject *const buffer = m_session.view().buffer();
  return pipeline != nullptr && buffer != nullptr && !pipeline->isLive() && pipeline->frames() != nullptr &&
         !m_session.timeline().isPlaying() && buffer->property("frameNumber").toInt() > 1;
}

// Until the answer comes no frame enters the stack.
void StackFill::noteRequest() {
  m_owed = m_owed || isUnderWay();
  breakOff();
}

void StackFill::noteAnswer(bool success) {
  m_empty = m_empty || success;
  const bool fills = success || m_owed;
  m_owed = false;
  if (fills && isWanted()) fillSoon();
}

void StackFill::noteCursor() {
  const int frame = m_session.timeline().frame();
  // The next frame enters the stack by itself.
  const bool goesOn = m_shown >= 0 && (frame == m_shown || frame == m_shown + 1);
  m_shown = frame;
  if (isWanted() && (!goesOn || isUnderWay())) fillSoon();
}

void StackFill::notePlaying() {
  stop();
  m_shown = m_session.timeline().frame();
  m_empty = m_owed = false;
}

void StackFill::fillSoon() {
  stop();
  m_delay.start();
}

void StackFill::stop() {
  m_delay.stop();
  m_turn.stop();
  if (Pipeline *const pipeline = m_session.pipeline()) pipeline->setPlaying(m_session.timeline().isPlaying());
}

/// Stops where the pipeline may stand at another frame than the timeline.
void StackFill::breakOff() {
  const bool isAstray = m_turn.isActive() && !m_begins;
  stop();
  Pipeline *const pipeline = m_session.pipeline();
  if (isAstray && pipeline != nullptr) pipeline->show(m_session.timeline().cursor());
}

void StackFill::turn() {
  Pipeline *const pipeline = m_session.pipeline();
  if (!isWanted()) return breakOff();
  if (pipeline->isBusy() || m_isHeld()) return;
  const int frame = m_session.timeline().frame();
  // At the very first frame no group comes in, at the second one the same that belongs there.
  const int last = std::max(frame, std::min(1, pipeline->frames()->count() - 1));
  if (m_begins) {
    m_begins = false;
    if (!begin(frame)) return;
    pipeline->setPlaying(true);
  } else {
    pipeline->setPlaying(false);
    if (m_next >= last && m_runsAtEnd-- == 0) return stop();
    m_next += m_groupFrames;
  }
  m_next = std::min(m_next, last);
  pipeline->show(pipeline->frames()->cursorOf(m_next));
}

/// False: the stack is made anew first.
bool StackFill::begin(int frame) {
  QObject &buffer = *m_session.view().buffer();
  const int depth = buffer.property("frameNumber").toInt();
  if (!m_empty && frame + 1 < depth) {
    // Too few frames lie before the cursor to replace what is in the stack.
    stop();
    QMetaObject::invokeMethod(&buffer, "clearMultiCanvas", Qt::DirectConnection);  // answers as a new stack does
    return false;
  }
  m_empty = false;
  // A deep stack begins with a group from far before; the ring goes round once to be rid of it.
  const int canvases = std::max(buffer.property("stackFrameNum").toInt(), 1);
  m_groupFrames = (depth + canvases - 1) / canvases;
  m_next = std::max(frame - depth - m_groupFrames, 1);
  m_runsAtEnd = canvases;
  return true;
}

}  // namespace tarvo::skarnvisor::app
