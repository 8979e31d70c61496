#include "contracts/runtime/ornika_loader.h"

#include "contracts/host/log.h"
#include "runtime/ornika/family_table.h"

namespace tarvo::lidar {

SKARN_LOG_SOURCE("libtarvo/ornika_loader");

void OrnikaLoader::parse(std::string type, int port) {
  const Callback *callback = &callbackDefault;
  switch (familyOf(type)) {
    case LidarFamily::KR:
      callback = &callbackOrnikaKR;
      break;
    case LidarFamily::LM:
      callback = &callbackOrnikaLM;
      break;
    case LidarFamily::QS:
      callback = &callbackOrnikaQS;
      break;
    case LidarFamily::FMCW:
      callback = &callbackOrnikaFMCW;
      break;
    case LidarFamily::NB:
      callback = &callbackOrnikaNB;
      break;
    case LidarFamily::Default:
      break;
  }
  if (*callback) {
    (*callback)(type, port);
    return;
  }
  SKARN_LOG(skarnvisor::LogLevel::Internal, "No pipeline is set for lidar type %s on port %d", type.c_str(), port);
}

}  // namespace tarvo::lidar
