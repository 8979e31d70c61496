#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <QSharedPointer>
#include <QString>
#include <cstdint>
#include <deque>
#include <memory>

#include "host/core/pipeline.h"
#include "host/core/timeline.h"

namespace tarvo::skarnvisor {

namespace Category {
class Instance;
}

/// What a live source is started with.
struct LiveOptions {
  std::uint16_t udpPort = 0;
  QString multicastGroup;  ///< IP address, empty: none
  QString bindAddress;     ///< IP address, empty: every interface
};

/// The host application without its window: the category tree, the opening and closing of sources, the timeline.
/// Lives on the GUI thread, which must run an event loop; everything here is called there and every signal comes there.
///
/// The flow of a program:
///   1. `loadPlugin(path)` once.
///   2. `openCapture`, `openLive` or `openFolder`; each returns at once and is worked off in the order of the calls.
///   3. `opened(pipeline)` or `openFailed(reason)` for each call. A pipeline comes with its buffers wired and its clip
///   loaded once;
///      its picture follows as soon as the timeline has run the chain (RenderBuffer's own signals announce it).
///   4. `timeline()` moves the cursor and plays.
///   5. `closePipeline(p)`: `stopping(p)` says that whoever works with the pipeline's objects on another thread must
///      have ended when the slot returns; the chain is stopped, `prepareForQmlRemoval()` called, then `closing(p)` says
///      that every pointer into the pipeline must be dropped; it is deleted on the next turn of the event loop, and
///      `closed` follows.
/// The destructor closes everything at once, in that order.
class HostCore : public QObject {
  Q_OBJECT
  Q_PROPERTY(tarvo::skarnvisor::Timeline *timeline READ timeline CONSTANT)
  Q_PROPERTY(bool opening READ isOpening NOTIFY openingChanged)
  Q_PROPERTY(QList<QObject *> pipelines READ pipelineObjects NOTIFY pipelinesChanged)

 public:
  explicit HostCore(QObject *parent = nullptr);
  ~HostCore() override;

  /// Loads the plug-in and has it register its classes. On failure false, with one sentence in `error`, also logged.
  bool loadPlugin(const QString &libraryPath, QString *error = nullptr);

  /// `sensorPort`: UDP port of the sensor to show, for a capture with several; 0: the first found.
  void openCapture(const QString &path, int sensorPort = 0);
  void openLive(const LiveOptions &options);
  /// Point-cloud files: a folder of them, or one such file.
  void openFolder(const QString &path);
  Q_INVOKABLE void openCaptureFile(const QString &path) { openCapture(path); }
  Q_INVOKABLE void openFolderPath(const QString &path) { openFolder(path); }
  Q_INVOKABLE void openLivePort(int udpPort);
  /// Gives up the opening in progress, which then fails, and forgets those behind it.
  Q_INVOKABLE void cancelOpening();
  [[nodiscard]] bool isOpening() const { return m_current != nullptr || !m_requests.empty(); }

  Q_INVOKABLE void closePipeline(tarvo::skarnvisor::Pipeline *pipeline);
  Q_INVOKABLE void closeAll();

  /// In the order of their opening.
  [[nodiscard]] const QList<Pipeline *> &pipelines() const { return m_pipelines; }
  [[nodiscard]] QList<QObject *> pipelineObjects() const;
  [[nodiscard]] Timeline *timeline() { return &m_timeline; }
  [[nodiscard]] Category::Instance &root() { return *m_root; }

 Q_SIGNALS:
  void openingChanged();
  void opened(tarvo::skarnvisor::Pipeline *pipeline);
  /// One sentence to show to the user: what was to be opened, and why it could not be.
  void openFailed(const QString &reason);
  void pipelinesChanged();
  void stopping(tarvo::skarnvisor::Pipeline *pipeline);
  void closing(tarvo::skarnvisor::Pipeline *pipeline);
  void closed(const QString &title);

 private:
  struct Request;

  void enqueue(std::unique_ptr<Request> request);
  void startNext();
  void startLoader(Request &request);
  void takeUp();
  void finishLoader(const QString &error);
  void finishOpening(Pipeline *pipeline, const QString &error);
  void endCurrent();
  void failCurrent(const QString &reason);
  [[nodiscard]] QString loaderFailure() const;
  void detach(Pipeline *pipeline);
  void destroy(Pipeline *pipeline);

  Timeline m_timeline;
  std::unique_ptr<Category::Instance> m_root;
  QList<Pipeline *> m_pipelines;  ///< opened, not yet closing; children of this
  std::deque<std::unique_ptr<Request>> m_requests;
  std::unique_ptr<Request> m_current;
};

}  // namespace tarvo::skarnvisor
