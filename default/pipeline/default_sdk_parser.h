#pragma once

#include "contracts/host/functor.h"
#include "default/pipeline/default_sdk_frame_render_buffer.h"

#include <QSharedPointer>

#include <cstddef>
#include <cstdint>

namespace tarvo::lidar {
class SDKSource;
} // namespace tarvo::lidar

namespace tarvo::skarnvisor {

/// Turns the frame that the producer had decoded into what the canvas draws. It keeps nothing between
/// runs: everything lies in the render buffer, which it owns.
///
/// A family parser passes null to the base and fills its own buffer in with `takeOver`.
class DefaultSDKParser : public Functor {
    Q_OBJECT
    Q_PROPERTY(tarvo::skarnvisor::DefaultSDKFrameRenderBuffer* defaultSDKFrameBuffer READ defaultSDKFrameBuffer CONSTANT)

public:
    Q_INVOKABLE explicit DefaultSDKParser(QObject* parent);
    Q_INVOKABLE DefaultSDKParser();
    Q_INVOKABLE DefaultSDKParser(QObject* parent, tarvo::skarnvisor::DefaultSDKFrameRenderBuffer* buffer);
    ~DefaultSDKParser() override;

    virtual DefaultSDKFrameRenderBuffer* defaultSDKFrameBuffer() const;

    /// Parses the source's current frame. Runs on the pipeline's thread; a repeat parse calls it on
    /// the GUI thread. Runs never overlap. Signals come after the locks are free.
    void operator()() override;

protected:
    void takeOver(DefaultSDKFrameRenderBuffer* buffer);

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
    };

    /// A run under the parse lock.
    void parseLocked();
    bool hasWork(DefaultSDKFrameRenderBuffer& rb, const tarvo::lidar::SDKSource* source) const;
    bool prepareCorrections(DefaultSDKFrameRenderBuffer& rb) const;
    FrameHead readHead(DefaultSDKFrameRenderBuffer::Frame& frame) const;
    void updateMonitor(DefaultSDKFrameRenderBuffer& rb, DefaultSDKFrameRenderBuffer::Frame& frame) const;
    void updateSideModels(DefaultSDKFrameRenderBuffer& rb, tarvo::lidar::SDKSource& source, const FrameHead& head) const;
    void fitCapacity(DefaultSDKFrameRenderBuffer& rb, std::size_t capacity) const;
    void followBlindChannels(DefaultSDKFrameRenderBuffer& rb, int rgbMode) const;
    bool fitCanvas(DefaultSDKFrameRenderBuffer& rb, std::size_t& pointNum) const;
    bool parsePoints(DefaultSDKFrameRenderBuffer& rb, tarvo::lidar::SDKSource& source, const FrameHead& head,
                     std::size_t pointNum) const;
    void finishFrame(DefaultSDKFrameRenderBuffer& rb, tarvo::lidar::SDKSource& source) const;
    void exportDetails(DefaultSDKFrameRenderBuffer& rb, tarvo::lidar::SDKSource& source) const;

    QSharedPointer<DefaultSDKFrameRenderBuffer> m_renderBuffer;
};

} // namespace tarvo::skarnvisor
