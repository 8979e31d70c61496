#include "runtime/ornika/family_table.h"

namespace tarvo::lidar {
namespace {

enum class Match { Whole, Prefix };

struct FamilyRow {
  std::string_view text;
  Match match;
  LidarFamily family;
};

// The first row that fits decides: a type that leaves the family of its name stands above that name.
constexpr FamilyRow familyRows[] = {
    {"KR8_19", Match::Whole, LidarFamily::LM},    {"KR8_37", Match::Whole, LidarFamily::LM},
    {"NB41X", Match::Whole, LidarFamily::KR},     {"FMCW", Match::Whole, LidarFamily::FMCW},
    {"FMCW_V3", Match::Whole, LidarFamily::FMCW}, {"FMCW_V4", Match::Whole, LidarFamily::FMCW},
    {"OrnikaQS", Match::Prefix, LidarFamily::QS}, {"QS", Match::Prefix, LidarFamily::QS},
    {"NBQ", Match::Prefix, LidarFamily::KR},      {"NBW", Match::Prefix, LidarFamily::KR},
    {"COLOR_", Match::Prefix, LidarFamily::KR},   {"NB41-6_", Match::Prefix, LidarFamily::NB},
    {"KR", Match::Prefix, LidarFamily::KR},       {"TRL-", Match::Prefix, LidarFamily::LM},
    {"LM", Match::Prefix, LidarFamily::LM},
};

}  // namespace

LidarFamily familyOf(std::string_view lidarType) noexcept {
  for (const auto &row : familyRows)
    if (row.match == Match::Whole ? lidarType == row.text : lidarType.starts_with(row.text)) return row.family;
  return LidarFamily::Default;
}

}  // namespace tarvo::lidar
