#pragma once

#include "default/pipeline/default_sdk_producer.h"

namespace tarvo::skarnvisor {

/// The producer of the LM family. It chooses frames as the base does.
class DefaultLMProducer : public DefaultSDKProducer {
  Q_OBJECT

 public:
  Q_INVOKABLE explicit DefaultLMProducer(QObject *parent);
  Q_INVOKABLE DefaultLMProducer();
  ~DefaultLMProducer() override;
};

}  // namespace tarvo::skarnvisor
