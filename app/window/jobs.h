#pragma once

#include <QFutureWatcher>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QTimer>
#include <QUrl>
#include <atomic>
#include <functional>

namespace tarvo::skarnvisor::app {

/// Work that takes longer than a turn of the event loop, one at a time, on a thread of its own. GUI thread but for the
/// work itself.
class Jobs : public QObject {
  Q_OBJECT
  Q_PROPERTY(bool running READ isRunning NOTIFY changed)
  Q_PROPERTY(QString text READ text NOTIFY changed)
  /// 0 to 1, or -1 while nobody knows.
  Q_PROPERTY(double share READ share NOTIFY changed)
  Q_PROPERTY(bool cancelling READ isCancelling NOTIFY changed)

 public:
  explicit Jobs(QObject *parent = nullptr);
  ~Jobs() override;

  bool isRunning() const { return m_running; }
  QString text() const { return m_text; }
  double share() const { return m_share; }
  bool isCancelling() const { return m_cancelled; }

  /// Writes frames `first` to `last` of a clip to a capture of their own.
  Q_INVOKABLE void cut(QObject *clip, const QUrl &target, int first, int last);
  /// Writes each file of a clip of point files into the folder, as .bin, .pcd or .csv.
  Q_INVOKABLE void convert(QObject *buffer, QObject *clip, const QUrl &folder, const QString &suffix);
  Q_INVOKABLE void cancel();
  /// Gives up what runs and waits for its end; before the objects that it works on go.
  void stop();
  /// What the source said of its last cut that failed; asked on the GUI thread.
  void setFaultSource(std::function<QString()> source) { m_faultSource = std::move(source); }
  /// Has the open source's cuts tell how far they are; what is told answers whether to go on.
  using WatchCuts = std::function<void(std::function<bool(double share)>)>;
  void setCutWatch(WatchCuts watch) { m_watchCuts = std::move(watch); }

 Q_SIGNALS:
  void changed();
  /// One sentence for the user.
  void succeeded(const QString &message);
  void failed(const QString &message);

 private:
  struct Outcome {
    bool done = false;
    QString message;
    bool hasFault = false;  ///< the source knows why
  };
  using Work = std::function<Outcome()>;

  void start(const QString &text, const Work &work);
  void finish();

  QFutureWatcher<Outcome> m_watcher;
  std::function<QString()> m_faultSource;
  WatchCuts m_watchCuts;
  QString m_text;
  std::atomic<double> m_workShare{-1};
  double m_share = -1;
  bool m_running = false;
  std::atomic<bool> m_cancelled{false};
  QTimer m_look;
};

}  // namespace tarvo::skarnvisor::app
