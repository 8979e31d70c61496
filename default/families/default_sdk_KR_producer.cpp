#include "default/families/default_sdk_KR_producer.h"

namespace tarvo::skarnvisor {

DefaultKRProducer::DefaultKRProducer(QObject *parent) : DefaultSDKProducer(parent) {}

DefaultKRProducer::DefaultKRProducer() : DefaultKRProducer(nullptr) {}

DefaultKRProducer::~DefaultKRProducer() = default;

}  // namespace tarvo::skarnvisor
