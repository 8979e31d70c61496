#pragma once

#include "default/pipeline/default_sdk_producer.h"

namespace tarvo::skarnvisor {

/// The producer of the KR family. It chooses frames as the base does.
class DefaultKRProducer : public DefaultSDKProducer {
  Q_OBJECT

 public:
  Q_INVOKABLE explicit DefaultKRProducer(QObject *parent);
  Q_INVOKABLE DefaultKRProducer();
  ~DefaultKRProducer() override;
};

}  // namespace tarvo::skarnvisor
