#pragma once

#include "contracts/host/functor.h"
#include "default/pipeline/default_sdk_frame_render_buffer.h"

#include <QSharedPointer>

#include <cstddef>
#include <cstdint>
#include <optional>

namespace tarvo::skarnvisor {

/// Turns the frame that the producer had decoded into what the canvas draws. It keeps nothing between
/// runs: everything lies in the render buffer, which it owns.
///
/// A family parser passes null to the base and fills its own buffer in with `takeOver`.
class DefaultSDKParser : public Functor {
  Q_OBJECT
  Q_PROPERTY(tarvo::skarnvisor::DefaultSDKFrameRenderBuffer *defaultSDKFrameBuffer READ defaultSDKFrameBuffer CONSTANT)

 public:
  Q_INVOKABLE explicit DefaultSDKParser(QObject *parent);
  Q_INVOKABLE DefaultSDKParser();
  Q_INVOKABLE DefaultSDKParser(QObject *parent, tarvo::skarnvisor::DefaultSDKFrameRenderBuffer *buffer);
  ~DefaultSDKParser() override;

  virtual DefaultSDKFrameRenderBuffer *defaultSDKFrameBuffer() const;

  /// Parses the source's current frame. Runs on the pipeline's thread; a repeat parse calls it on
  /// the GUI thread. Runs never overlap. Signals come after the locks are free.
  void operator()() override;

 protected:
  void takeOver(DefaultSDKFrameRenderBuffer *buffer);

 private:
  friend class DefaultSDKFrameRenderBuffer;

  /// What one run knows of the decoded frame, taken once under the frame's lock.
  struct FrameHead {
    std::size_t capacity = 0;
    std::uint16_t lasers = 0;
    std::uint16_t channels = 0;
    std::uint8_t returnMode = 0;
    std::uint8_t selectedEcho = 0;
    double motorSpeed = 0.0;
    std::size_t framePoints = 0;  ///< of a single frame
  };

  enum class Work { None, NewFrame, Repeat };

  /// What a run has published.
  struct ParsedFrame {
    int pointCount = 0;
    bool fastPath = false;  ///< the decoder had filled the vertices already
  };

  /// A run; the caller holds the parse lock and an AnnouncementScope.
  void parseLocked();
  /// Takes the producer's word, and what a repeat parse has left to this run.
  Work takeWork(DefaultSDKFrameRenderBuffer &rb, const tarvo::lidar::SDKSource *source) const;
  void prepareCorrections(DefaultSDKFrameRenderBuffer &rb, tarvo::lidar::SvSdkRuntime &runtime) const;
  FrameHead readHead(DefaultSDKFrameRenderBuffer::Frame &frame) const;
  void updateMonitor(DefaultSDKFrameRenderBuffer &rb, const tarvo::lidar::SDKSource &source,
                     DefaultSDKFrameRenderBuffer::Frame &frame) const;
  void updateSideModels(DefaultSDKFrameRenderBuffer &rb, tarvo::lidar::SDKSource &source, const FrameHead &head) const;
  void updateFaults(DefaultSDKFrameRenderBuffer &rb, tarvo::lidar::SDKSource &source) const;
  void followBlindChannels(DefaultSDKFrameRenderBuffer &rb, int rgbMode) const;
  /// Enters the next canvas, or the last one again, and cuts `pointNum` to its room; false when there is none.
  bool fitCanvas(DefaultSDKFrameRenderBuffer &rb, Work work, std::size_t &pointNum) const;
  /// Nothing when the picture stays as it was.
  std::optional<ParsedFrame> parsePoints(DefaultSDKFrameRenderBuffer &rb, tarvo::lidar::SDKSource &source,
                                         const FrameHead &head, Work work) const;
  void finishFrame(DefaultSDKFrameRenderBuffer &rb, const ParsedFrame &parsed, double timestamp) const;

  QSharedPointer<DefaultSDKFrameRenderBuffer> m_renderBuffer;
};

}  // namespace tarvo::skarnvisor
