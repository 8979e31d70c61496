#pragma once

#include <QUrl>
#include <atomic>
#include <string>

#include "contracts/host/clip_buffer.h"
#include "contracts/runtime/sv_sdk_runtime.h"
#include "default/pipeline/sdk_source_owner.h"

namespace tarvo::skarnvisor {

/// The clip of a lidar track: how many frames it has, which one is shown, and the ways to keep a part of it as a
/// capture file. Its parent owns the source. Invokables belong to the GUI thread; the functor thread writes the frame
/// numbers.
class DefaultSDKNetBuffer : public ClipBuffer {
  Q_OBJECT
  Q_PROPERTY(int frameID READ frameID NOTIFY frameIDChanged)
  Q_PROPERTY(int frameCount READ frameCount NOTIFY frameIDChanged)
  Q_PROPERTY(bool frameIndexUseful READ frameIndexUseful NOTIFY frameIDChanged)

 public:
  /// @param parent an SdkSourceOwner, or a clip without a source
  explicit DefaultSDKNetBuffer(QObject *parent = nullptr);
  ~DefaultSDKNetBuffer() override;

  [[nodiscard]] bool pcapActive() const override;
  [[nodiscard]] bool loading() const override { return m_loading; }
  void setLoading(bool loading) override;
  [[nodiscard]] bool pcapLoading() const override;
  [[nodiscard]] bool pcapStopped() const override;
  void setPcapActive(bool active) override;

  /// Frame that the track shows, from 0.
  [[nodiscard]] int frameID() const { return m_frameID; }
  /// Stores a frame that differs and announces it. Any thread.
  void showFrame(int frame);
  [[nodiscard]] int frameCount() const { return m_frameCount; }
  [[nodiscard]] bool frameIndexUseful() const { return m_frameIndexUseful; }
  /// Takes over the extent and the frame count of the source as it stands; nothing while its extent is unknown.
  void follow(const lidar::SDKSource &source);

  /// Seconds since 1970; 0 for a frame that the capture does not have.
  Q_INVOKABLE double getFrameStartSeconds(int frame) const;
  /// Writes the frames `first` to `last`, both included, to a new capture file. False: nothing usable was written.
  Q_INVOKABLE bool cutPcap(QUrl target, int first, int last);
  /// The same for a stretch of time, in the timeline's own time text.
  Q_INVOKABLE bool cutPcap(QUrl target, QString begin, QString end);
  /// Starts a recording to a file that the user is asked for, or ends it. True: done; false also when the user backed
  /// out. Must run on the thread of the widgets.
  Q_INVOKABLE bool setRecord(bool on);
  /// The last value given to `setRecord`, whatever came of it.
  [[nodiscard]] bool recording() const { return m_recording; }
  /// File of the last recording, local 8-bit code page; empty before the first.
  [[nodiscard]] const std::string &recordPath() const { return m_recordPath; }

 Q_SIGNALS:
  /// The shown frame, or the number of frames, is another one. May come from any thread.
  void frameIDChanged();

 protected:
  /// Asks for the file of a recording, offering `lastPath`; empty when the user backed out.
  virtual QString askRecordFile(const QString &lastPath);

 private:
  [[nodiscard]] lidar::SDKSource *source() const;
  [[nodiscard]] lidar::SvSdkRuntime *runtime() const;

  std::atomic<int> m_frameID{0};
  bool m_recording = false;
  std::string m_recordPath;
  std::atomic<int> m_frameCount{0};
  std::atomic<bool> m_frameIndexUseful{false};
  std::atomic<bool> m_loading{true};
};

}  // namespace tarvo::skarnvisor
