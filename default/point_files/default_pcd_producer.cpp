#include "default/point_files/default_pcd_producer.h"

namespace tarvo::skarnvisor {

DefaultPcdProducer::DefaultPcdProducer(QObject *parent)
    : Functor(parent), m_timeCursorToggle(new TimeCursorToggle(this)), m_trackBuffer(new DefaultPcdTrackBuffer(this)) {}

DefaultPcdProducer::DefaultPcdProducer() : DefaultPcdProducer(nullptr) {}

DefaultPcdProducer::~DefaultPcdProducer() = default;

}  // namespace tarvo::skarnvisor
