#pragma once

#include "default/pipeline/default_sdk_frame_render_buffer.h"

namespace tarvo::skarnvisor {

/// A decode under way: keeps repeat parses away from points that the decoder is writing.
class DecodeScope {
 public:
  explicit DecodeScope(DefaultSDKFrameRenderBuffer &renderBuffer) : m_renderBuffer(renderBuffer) {
    m_renderBuffer.beginDecode();
  }
  ~DecodeScope() { m_renderBuffer.endDecode(); }
  DecodeScope(const DecodeScope &) = delete;
  DecodeScope &operator=(const DecodeScope &) = delete;

 private:
  DefaultSDKFrameRenderBuffer &m_renderBuffer;
};

}  // namespace tarvo::skarnvisor
