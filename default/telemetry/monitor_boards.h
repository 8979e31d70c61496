#pragma once

#include "default/telemetry/monitor_table.h"

#include <array>
#include <string_view>

namespace tarvo::skarnvisor {

/// The tables that the three cell groups of a status block are read through; null: the group holds nothing.
using MonitorBoards = std::array<const MonitorTable *, 3>;

/// Boards of a lidar type in the base pipeline; `variant` is byte 1 of the status block. All null for a type without
/// boards. Any thread.
MonitorBoards monitorBoards(std::string_view lidarType, quint8 variant);

/// Boards of a lidar type of a family that reads the block itself. Any thread.
MonitorBoards familyMonitorBoards(std::string_view lidarType);

/// The boards themselves. Any thread.
namespace boards {
const MonitorTable &boardA();
const MonitorTable &bottomBoardA();
const MonitorTable &errorRate();
const MonitorTable &boardB1();
const MonitorTable &bottomBoardB1();
const MonitorTable &boardB2();
const MonitorTable &bottomBoardB2();
const MonitorTable &boardB3();
const MonitorTable &bottomBoardB3();
const MonitorTable &boardC();
const MonitorTable &bottomBoardC();
const MonitorTable &boardD();
const MonitorTable &bottomBoardD();
const MonitorTable &boardE();
const MonitorTable &boardF();
const MonitorTable &boardG();
const MonitorTable &boardH();
const MonitorTable &boardK();
const MonitorTable &boardL();
}  // namespace boards

}  // namespace tarvo::skarnvisor
