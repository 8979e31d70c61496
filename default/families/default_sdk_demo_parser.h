#pragma once

#include "default/pipeline/default_sdk_parser.h"
#include "default/pipeline/default_sdk_producer.h"

namespace tarvo::skarnvisor {

/// A sample of a lidar family: its own tool box, no optional attributes.
class DefaultDemoFrameRenderBuffer : public DefaultSDKFrameRenderBuffer {
  Q_OBJECT

 public:
  using DefaultSDKFrameRenderBuffer::DefaultSDKFrameRenderBuffer;

  void addColumnAttribute(std::string name, int position) override;
  QString toolBoxSource() const override;
};

/// Parser that owns the family's render buffer.
class DefaultDemoParser : public DefaultSDKParser {
  Q_OBJECT

 public:
  Q_INVOKABLE explicit DefaultDemoParser(QObject *parent);
  Q_INVOKABLE DefaultDemoParser();
};

/// Producer that leaves the frames to whoever feeds the source.
class DefaultDemoProducer : public DefaultSDKProducer {
  Q_OBJECT

 public:
  Q_INVOKABLE explicit DefaultDemoProducer(QObject *parent);
  Q_INVOKABLE DefaultDemoProducer();

  void operator()() override;
};

}  // namespace tarvo::skarnvisor
