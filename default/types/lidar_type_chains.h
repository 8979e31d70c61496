#pragma once

#include <array>

#include "default/types/lidar_type_row.h"

namespace tarvo::skarnvisor {

/// One chain for each family callback; which chain a type belongs to is decided by that callback, not here.
enum class LidarFamily { Base, KR, LM, NB, QS, FMCW };

inline constexpr std::array lidarFamilies{LidarFamily::Base, LidarFamily::KR, LidarFamily::LM,
                                          LidarFamily::NB,   LidarFamily::QS, LidarFamily::FMCW};

/// The chain of a family. Built once, never changed; any thread.
const LidarTypeChain &lidarTypeChain(LidarFamily family);

/// The row of a type in the first chain that has one; null for a type that no chain knows.
const LidarTypeRow *findLidarType(std::string_view type);

/// The older mechanical types, the VD, YF, WG, ZC and HU types.
const LidarTypeChain &baseTypeChain();
/// The KR types, and the NBQ, NBW and colour types on the KR pipeline.
const LidarTypeChain &krTypeChain();
const LidarTypeChain &lmTypeChain();
const LidarTypeChain &nbTypeChain();
const LidarTypeChain &qsTypeChain();
const LidarTypeChain &fmcwTypeChain();

}  // namespace tarvo::skarnvisor
