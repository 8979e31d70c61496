#pragma once

#include "default/telemetry/device_tables.h"
#include "default/telemetry/monitor_boards.h"

#include <QtGlobal>

#include <vector>

namespace tarvo::skarnvisor {

/// Layout of a device-status block, little-endian: presence byte, variant byte, u32 cells a group, three groups of
/// 256 cells. A cell is a 16-bit value and a byte that is not zero when the value is valid.
namespace status_block {
inline constexpr std::size_t variantOffset = 1;
inline constexpr std::size_t countOffset = 2;
inline constexpr std::size_t groupsOffset = 6;
inline constexpr std::size_t cellBytes = 3;
inline constexpr std::size_t groupBytes = MonitorTable::cellsAtMost * cellBytes;
inline constexpr std::size_t blockBytes = groupsOffset + 3 * groupBytes;
}  // namespace status_block

/// Temperature in degrees Celsius of a thermistor that was read as `raw` of 4096 at its divider. -40 for one that is
/// colder than the table, or warmer than all of it.
float thermistorCelsius(quint16 raw, const ResistanceTable &table);

/// Appends the rows of one group. `count` is what the block says; more than 256 cells are not there.
void decodeGroup(const unsigned char *cells, quint32 count, const MonitorTable &table, const ResistanceTable &rntc,
                 std::vector<NamedValue> &rows);

/// The rows of a block of `status_block::blockBytes` bytes, group by group.
std::vector<NamedValue> decodeMonitor(const unsigned char *block, const MonitorBoards &boards,
                                      const ResistanceTable &rntc);

}  // namespace tarvo::skarnvisor
