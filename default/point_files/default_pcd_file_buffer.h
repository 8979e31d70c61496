#pragma once

#include <QString>
#include <QStringList>
#include <QUrl>
#include <cstdint>

#include "contracts/host/clip_buffer.h"
#include "default/models/settings_value.h"
#include "default/point_files/pcd_frame_entry.h"

namespace tarvo::skarnvisor {

class DefaultPcdFileLoader;

/// A clip that answers which point file belongs to a time. Callable from any thread.
class DefaultPcdBuffer : public ClipBuffer {
  Q_OBJECT

 public:
  explicit DefaultPcdBuffer(QObject *parent);
  ~DefaultPcdBuffer() override;

  /// Position in the list, by time, of the frame at `ticks` (100 ns); -1 outside the clip.
  [[nodiscard]] virtual int frameIndexAt(std::int64_t ticks) const = 0;
  /// Path of the frame at `ticks`, which becomes the current one; empty outside the clip.
  virtual QString fileAt(std::int64_t ticks) = 0;
  /// In the order of time.
  [[nodiscard]] virtual QStringList fileList() const = 0;
  /// For clips that read from elsewhere; here it has no effect.
  virtual void setLocation(QString location);
};

/// The clip of a folder of point files. The scan publishes the list as a whole; readers on any thread see the list of
/// before or the new one. Child of the loader, through which it reaches the source and the render buffer.
class DefaultPcdFileBuffer : public DefaultPcdBuffer {
  Q_OBJECT
  Q_PROPERTY(int frameCount READ frameCount NOTIFY changed)
  Q_PROPERTY(int frameID READ frameID NOTIFY frameIDChanged)

 public:
  explicit DefaultPcdFileBuffer(DefaultPcdFileLoader *loader);
  ~DefaultPcdFileBuffer() override;

  [[nodiscard]] bool pcapActive() const override;
  [[nodiscard]] bool pcapLoading() const override { return pcapActive(); }
  [[nodiscard]] bool pcapStopped() const override;
  void setPcapActive(bool active) override;

  /// While the folder is being scanned, the last of several frames does not count yet.
  [[nodiscard]] int frameIndexAt(std::int64_t ticks) const override;
  QString fileAt(std::int64_t ticks) override;
  [[nodiscard]] Q_INVOKABLE QStringList fileList() const override;

  [[nodiscard]] int frameCount() const { return static_cast<int>(m_frames.take()->size()); }
  /// Index of the frame that `fileAt` found last.
  [[nodiscard]] int frameID() const { return m_frameID; }

  /// 0 where no frame, or the first, is found.
  [[nodiscard]] Q_INVOKABLE int findFrameID(double seconds) const;
  /// An index outside the list gives the last frame's time; an empty list 0.
  [[nodiscard]] Q_INVOKABLE double getFrameStartSeconds(int index) const;
  // A folder has nothing to cut: its files are the frames.
  Q_INVOKABLE bool cutPcap(QUrl target, QString begin, QString end);
  Q_INVOKABLE bool cutPcap(QUrl target, int begin, int end);
  /// Forwarded to the render buffer.
  Q_INVOKABLE void setDetailExport(bool on, int type = 1, QUrl url = QUrl());

  /// Adds the frames of one scan, orders all by time and sets the clip's extent to them; `changed()` is the caller's to
  /// emit. Nothing happens without a frame.
  void append(PcdFrameList frames);

 Q_SIGNALS:
  void frameIDChanged();

 private:
  /// Index of the last frame that starts at or before `ticks`; -1 outside the clip.
  [[nodiscard]] int search(const PcdFrameList &frames, std::int64_t ticks) const;

  DefaultPcdFileLoader *m_loader;  ///< the parent
  Snapshot<PcdFrameList> m_frames;
  Relaxed<int> m_frameID{0};
};

}  // namespace tarvo::skarnvisor
