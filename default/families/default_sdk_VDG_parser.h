#pragma once

#include "default/pipeline/default_sdk_parser.h"

namespace tarvo::skarnvisor {

/// The render buffer of the VDG family.
class DefaultVDGFrameRenderBuffer : public DefaultSDKFrameRenderBuffer {
  Q_OBJECT

 public:
  using DefaultSDKFrameRenderBuffer::DefaultSDKFrameRenderBuffer;

  QString initialFunctionSource() const override;
};

/// Parser that owns the family's render buffer.
class DefaultVDGParser : public DefaultSDKParser {
  Q_OBJECT

 public:
  Q_INVOKABLE explicit DefaultVDGParser(QObject *parent);
  Q_INVOKABLE DefaultVDGParser();
};

}  // namespace tarvo::skarnvisor
