#include "app/window/drawing_thread.h"

#include <QOpenGLFramebufferObject>
#include <QOpenGLFunctions>
#include <QThreadPool>
#include <chrono>
#include <utility>

#include "app/window/cloud_painter.h"
#include "contracts/host/log.h"

SKARN_LOG_SOURCE("app/drawing_thread");

namespace tarvo::skarnvisor::app {

std::unique_ptr<DrawingThread> DrawingThread::begin(QOpenGLContext &sceneGraph) {
  std::unique_ptr<DrawingThread> thread(new DrawingThread);
  QOpenGLContext &context = thread->m_context;
  context.setFormat(sceneGraph.format());
  context.setShareContext(&sceneGraph);
  thread->m_surface.setFormat(sceneGraph.format());
  thread->m_surface.create();
  if (!context.create() || context.shareContext() == nullptr || !thread->m_surface.isValid()) {
    SKARN_LOG(LogLevel::Warning, "no second OpenGL context; pictures are drawn with the window");
    return {};
  }
  context.moveToThread(thread.get());
  thread->setObjectName(QStringLiteral("drawing"));
  thread->start();
  return thread;
}

DrawingThread::~DrawingThread() { stop(); }

void DrawingThread::order(PictureOrder order) {
  std::optional<PictureOrder> replaced(std::move(order));
  {
    const std::lock_guard lock(m_mutex);
    m_waiting.swap(replaced);
  }
  m_changed.notify_all();
  // The system takes back large blocks slowly, and the drawing may take longer than further orders need to come.
  if (replaced) QThreadPool::globalInstance()->start(QRunnable::create([order = std::move(*replaced)] {}));
}

std::optional<DrawingThread::Texture> DrawingThread::take() {
  const std::lock_guard lock(m_mutex);
  if (m_fresh) m_targets[Shown].swap(m_targets[Finished]);
  m_fresh = false;
  const auto &shown = m_targets[Shown];
  if (!shown) return std::nullopt;
  return Texture{shown->texture(), shown->size()};
}

DrawnPicture DrawingThread::drawn() const {
  const std::lock_guard lock(m_mutex);
  return m_drawn;
}

bool DrawingThread::waitFor(std::uint64_t serial, int milliseconds) {
  std::unique_lock lock(m_mutex);
  const auto done = [&] { return m_drawn.serial >= serial; };
  m_changed.wait_for(lock, std::chrono::milliseconds(milliseconds), [&] { return done() || m_stopped; });
  return done();
}

void DrawingThread::stop() {
  {
    const std::lock_guard lock(m_mutex);
    m_stopped = true;
  }
  m_changed.notify_all();
  wait();
}

bool DrawingThread::isStopped() const {
  const std::lock_guard lock(m_mutex);
  return m_stopped;
}

void DrawingThread::run() {
  if (m_context.makeCurrent(&m_surface)) {
    drawOrders();
    decltype(m_targets) targets;
    {
      const std::lock_guard lock(m_mutex);
      targets.swap(m_targets);
    }
    targets = {};
    m_context.doneCurrent();
  } else {
    SKARN_LOG(LogLevel::Warning, "the second OpenGL context cannot be used; pictures are drawn with the window");
  }
  bool stopped = false;
  {
    const std::lock_guard lock(m_mutex);
    stopped = std::exchange(m_stopped, true);
    m_waiting.reset();
  }
  m_changed.notify_all();
  // Its owner destroys it, on the owner's thread.
  m_context.moveToThread(thread());
  if (!stopped) Q_EMIT failed();
}

void DrawingThread::drawOrders() {
  CloudPainter painter;
  const QOpenGLFramebufferObjectFormat format = [] {
    QOpenGLFramebufferObjectFormat wanted;
    wanted.setAttachment(QOpenGLFramebufferObject::CombinedDepthStencil);
    return wanted;
  }();
  while (const auto order = nextOrder()) {
    if (!m_context.isValid()) return;  // the graphics card was reset
    auto &target = m_targets[Drawing];
    if (!target || target->size() != order->pixels)
      target = std::make_unique<QOpenGLFramebufferObject>(order->pixels, format);
    const DrawnPicture drawn = painter.paint(*order, *target, [this] { return !isStopped(); });
    // The scene graph must find the picture complete, and never wait for it.
    m_context.functions()->glFinish();
    publish(drawn);
  }
}

std::optional<PictureOrder> DrawingThread::nextOrder() {
  std::unique_lock lock(m_mutex);
  m_changed.wait(lock, [this] { return m_waiting || m_stopped; });
  if (m_stopped) return std::nullopt;
  return std::exchange(m_waiting, std::nullopt);
}

void DrawingThread::publish(const DrawnPicture &drawn) {
  {
    const std::lock_guard lock(m_mutex);
    if (m_stopped) return;
    m_targets[Finished].swap(m_targets[Drawing]);
    m_fresh = true;
    m_drawn = drawn;
  }
  m_changed.notify_all();
  Q_EMIT pictureDrawn();
}

}  // namespace tarvo::skarnvisor::app
