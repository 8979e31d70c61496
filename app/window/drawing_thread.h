#pragma once

#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QThread>
#include <array>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>

#include "app/window/canvas_scene.h"

class QOpenGLFramebufferObject;

namespace tarvo::skarnvisor::app {

class CloudPainter;

/// Draws pictures of the cloud on a thread of its own, with an OpenGL context that shares its textures with the scene
/// graph's. Of the orders that wait, only the newest is drawn. Three textures go round: one is drawn into, one holds
/// the newest finished picture, one is the scene graph's. The object belongs to the GUI thread.
class DrawingThread : public QThread {
  Q_OBJECT

 public:
  /// A texture with a finished picture.
  struct Texture {
    unsigned id = 0;
    QSize size;
  };

  /// Null if there can be no such context; GUI thread.
  static std::unique_ptr<DrawingThread> begin(QOpenGLContext &sceneGraph);
  ~DrawingThread() override;

  /// Replaces the order that waits; any thread.
  void order(PictureOrder order);
  /// The newest finished picture, which stays as it is until the next call; nothing before the first one is finished.
  /// For the scene graph alone: any thread, one at a time.
  std::optional<Texture> take();
  /// What was drawn last; serial 0: nothing yet. Any thread.
  DrawnPicture drawn() const;
  /// Waits until the order of that serial, or a later one, is drawn; false if it is not within the time, or never will
  /// be. Any thread but this one.
  bool waitFor(std::uint64_t serial, int milliseconds);
  /// Ends the thread, which abandons what it draws; its textures are gone then. Any thread but this one.
  void stop();
  bool isStopped() const;

 Q_SIGNALS:
  /// A picture is finished.
  void pictureDrawn();
  /// The context cannot be used; nothing will be drawn.
  void failed();

 protected:
  void run() override;

 private:
  DrawingThread() = default;
  void drawOrders();
  std::optional<PictureOrder> nextOrder();
  void publish(const DrawnPicture &drawn);

  QOffscreenSurface m_surface;
  QOpenGLContext m_context;

  mutable std::mutex m_mutex;  ///< guards the members down to `m_stopped`
  std::condition_variable m_changed;
  std::optional<PictureOrder> m_waiting;
  DrawnPicture m_drawn;
  /// By role; the drawing thread alone uses the first without the mutex.
  enum Role { Drawing, Finished, Shown };
  std::array<std::unique_ptr<QOpenGLFramebufferObject>, 3> m_targets;
  bool m_fresh = false;  ///< the finished picture has not been taken
  bool m_stopped = false;
};

}  // namespace tarvo::skarnvisor::app
