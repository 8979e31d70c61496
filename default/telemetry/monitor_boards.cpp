#include "default/telemetry/monitor_boards.h"

#include <algorithm>
#include <vector>

namespace tarvo::skarnvisor {

namespace {

constexpr int anyVariant = -1;

struct TypeBoards {
  std::vector<std::string_view> types;
  int variant = anyVariant;
  MonitorBoards boards{};
};

/// In the order in which they are tried.
const std::vector<TypeBoards> &typeBoards() {
  using namespace boards;
  static const std::vector<TypeBoards> rows{
      {{"Ornika210", "OrnikaAura", "Ornika70S_plusInfo", "Ornika44S_plusInfo"},
       anyVariant,
       {&boardA(), &bottomBoardA(), &errorRate()}},
      {{"WG9"}, 128, {&boardB2(), &bottomBoardB2(), &errorRate()}},
      {{"WG9"}, 129, {&boardB3(), &bottomBoardB3(), &errorRate()}},
      {{"WG9"}, anyVariant, {&boardB1(), &bottomBoardB1(), &errorRate()}},
      {{"OrnikaYF", "OrnikaYFN"}, anyVariant, {&boardC(), &bottomBoardC(), &errorRate()}},
      {{"VD8"}, anyVariant, {&boardD(), &bottomBoardD(), nullptr}},
      {{"VD2"}, anyVariant, {&boardE(), nullptr, nullptr}},
      {{"VD5_Serial"}, anyVariant, {&boardF(), nullptr, nullptr}},
      {{"OrnikaZC"}, anyVariant, {&boardG(), nullptr, nullptr}},
      {{"OrnikaZC8", "OrnikaZC8Special"}, anyVariant, {&boardH(), nullptr, nullptr}},
  };
  return rows;
}

const std::vector<TypeBoards> &familyTypeBoards() {
  using namespace boards;
  static const std::vector<TypeBoards> rows{
      {{"KR2"}, anyVariant, {&boardA(), &bottomBoardA(), &errorRate()}},
      {{"KR9"}, anyVariant, {&boardK(), nullptr, nullptr}},
      {{"LM"}, anyVariant, {&boardA(), nullptr, nullptr}},
      {{"LMQ"}, anyVariant, {&boardL(), nullptr, nullptr}},
  };
  return rows;
}

MonitorBoards findBoards(const std::vector<TypeBoards> &rows, std::string_view lidarType, quint8 variant) {
  for (const TypeBoards &row : rows) {
    const bool named = std::find(row.types.begin(), row.types.end(), lidarType) != row.types.end();
    if (named && (row.variant == anyVariant || row.variant == variant)) return row.boards;
  }
  return {};
}

}  // namespace

MonitorBoards monitorBoards(std::string_view lidarType, quint8 variant) {
  return findBoards(typeBoards(), lidarType, variant);
}

MonitorBoards familyMonitorBoards(std::string_view lidarType) { return findBoards(familyTypeBoards(), lidarType, 0); }

}  // namespace tarvo::skarnvisor
