#include "default/types/lidar_type_chains.h"

#include <algorithm>

namespace tarvo::skarnvisor {

const LidarTypeRow *LidarTypeChain::find(std::string_view type) const {
  for (const LidarTypeRow &row : rows)
    if (std::find(row.types.begin(), row.types.end(), type) != row.types.end()) return &row;
  return nullptr;
}

const LidarTypeRow *findLidarType(std::string_view type) {
  for (const LidarFamily family : lidarFamilies)
    if (const LidarTypeRow *row = lidarTypeChain(family).find(type)) return row;
  return nullptr;
}

const LidarTypeChain &lidarTypeChain(LidarFamily family) {
  switch (family) {
    case LidarFamily::KR:
      return krTypeChain();
    case LidarFamily::LM:
      return lmTypeChain();
    case LidarFamily::NB:
      return nbTypeChain();
    case LidarFamily::QS:
      return qsTypeChain();
    case LidarFamily::FMCW:
      return fmcwTypeChain();
    case LidarFamily::Base:
      break;
  }
  return baseTypeChain();
}

}  // namespace tarvo::skarnvisor
