#pragma once

#include <array>

#include "contracts/runtime/ornika_loader.h"
#include "default/types/lidar_type_chains.h"

namespace tarvo::skarnvisor {

/// What a family callback builds. Class names go without their namespace.
struct FamilyRow {
  lidar::OrnikaLoader::Callback lidar::OrnikaLoader::*callback;
  const char *category;
  const char *producer;
  const char *parser;
  LidarFamily family;
};

inline constexpr const char *netLoaderClass = "DefaultSDKNetLoader";

/// In the order in which the callbacks are installed.
inline constexpr std::array<FamilyRow, 6> familyTable{{
    {&lidar::OrnikaLoader::callbackDefault, "DefaultSDKCategory", "DefaultSDKProducer", "DefaultSDKParser",
     LidarFamily::Base},
    {&lidar::OrnikaLoader::callbackOrnikaKR, "DefaultKRCategory", "DefaultKRProducer", "DefaultKRParser",
     LidarFamily::KR},
    {&lidar::OrnikaLoader::callbackOrnikaLM, "DefaultLMCategory", "DefaultLMProducer", "DefaultLMParser",
     LidarFamily::LM},
    {&lidar::OrnikaLoader::callbackOrnikaQS, "DefaultQSCategory", "DefaultSDKProducer", "DefaultQSParser",
     LidarFamily::QS},
    {&lidar::OrnikaLoader::callbackOrnikaFMCW, "DefaultFMCWCategory", "DefaultSDKProducer", "DefaultFMCWParser",
     LidarFamily::FMCW},
    {&lidar::OrnikaLoader::callbackOrnikaNB, "DefaultNBCategory", "DefaultSDKProducer", "DefaultNBParser",
     LidarFamily::NB},
}};

}  // namespace tarvo::skarnvisor
