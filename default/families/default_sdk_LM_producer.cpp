#include "default/families/default_sdk_LM_producer.h"

namespace tarvo::skarnvisor {

DefaultLMProducer::DefaultLMProducer(QObject *parent) : DefaultSDKProducer(parent) {}

DefaultLMProducer::DefaultLMProducer() : DefaultLMProducer(nullptr) {}

DefaultLMProducer::~DefaultLMProducer() = default;

}  // namespace tarvo::skarnvisor
