#pragma once

#include <QDateTime>
#include <QList>
#include <QObject>
#include <QSharedPointer>
#include <QString>
#include <atomic>
#include <memory>

#include "contracts/host/time.h"
#include "contracts/runtime/sdk_source.h"

namespace tarvo::skarnvisor {

using lidar::SDKSource;

/// A switch of a functor: what it takes in beside its predecessors. The source toggles are filled on the GUI thread
/// before their functor runs, and emptied by the functor; nobody else touches them meanwhile.
class Toggle : public QObject {
  Q_OBJECT

 public:
  explicit Toggle(QObject *parent = nullptr);
  ~Toggle() override;
};

/// Hands a lidar source to a loader.
class SDKToggle : public Toggle {
  Q_OBJECT

 public:
  explicit SDKToggle(QObject *parent = nullptr);
  ~SDKToggle() override;

  /// The source that the user chose; empty between two openings. The reference may be swapped out.
  QSharedPointer<SDKSource> &sdkSource() { return m_source; }
  /// Puts a fresh source with a runtime of its own in place and returns it, to be filled with start parameters.
  QSharedPointer<SDKSource> &newSDKSource();

  /// File extensions without the dot, offered by the open dialog.
  void setExtsFile(const QList<QString> &extensions) { m_extensions = extensions; }
  [[nodiscard]] QList<QString> exts_file() const { return m_extensions; }

 private:
  QSharedPointer<SDKSource> m_source;
  QList<QString> m_extensions;
};

/// The SDKToggle that the user operates: the host's "open" actions look for it.
class InputSDKToggle : public SDKToggle {
  Q_OBJECT

 public:
  explicit InputSDKToggle(QObject *parent = nullptr);
  ~InputSDKToggle() override;
};

/// A folder of point-cloud files and the state of its clip. The three flags mean what those of an SDKSource mean.
class FileSource : public QObject {
  Q_OBJECT

 public:
  explicit FileSource(QObject *parent = nullptr);
  ~FileSource() override;

  /// Set before the loader runs, not changed after it.
  QString path;
  std::atomic<bool> clipLoading{false};
  std::atomic<bool> clipActive{false};
  std::atomic<bool> clipStopped{false};
  /// Shared with the render buffer and the host; never null.
  std::shared_ptr<lidar::PlayState> playState;
};

/// Hands a folder to a loader.
class FileToggle : public Toggle {
  Q_OBJECT

 public:
  explicit FileToggle(QObject *parent = nullptr);
  ~FileToggle() override;

  QSharedPointer<FileSource> &fileSource() { return m_source; }
  QSharedPointer<FileSource> &newFileSource();

  void setExts(const QList<QString> &extensions) { m_extensions = extensions; }
  [[nodiscard]] QList<QString> exts() const { return m_extensions; }

 private:
  QSharedPointer<FileSource> m_source;
  QList<QString> m_extensions;
};

class InputFileToggle : public FileToggle {
  Q_OBJECT

 public:
  explicit InputFileToggle(QObject *parent = nullptr);
  ~InputFileToggle() override;
};

/// The playback cursor as a producer reads it: written on the GUI thread, read on the functor thread at each run.
class TimeCursorToggle : public Toggle {
  Q_OBJECT
  Q_PROPERTY(QDateTime cursorDateTime READ cursorDateTime WRITE setCursorDateTime NOTIFY timeCursorChanged)

 public:
  explicit TimeCursorToggle(QObject *parent = nullptr);
  ~TimeCursorToggle() override;

  [[nodiscard]] TimePoint timeCursor() const { return TimePoint(Ticks(m_cursor.load(std::memory_order_acquire))); }
  /// Does not run anything: whoever moves the cursor posts the runs.
  void setTimeCursor(TimePoint cursor);
  [[nodiscard]] QDateTime cursorDateTime() const;
  void setCursorDateTime(const QDateTime &cursor);

 Q_SIGNALS:
  void timeCursorChanged();

 private:
  std::atomic<Ticks::rep> m_cursor{0};
};

}  // namespace tarvo::skarnvisor
