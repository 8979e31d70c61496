// What the lidar says of itself: the status block and a storm of fault packets.

#include <array>
#include <memory>
#include <vector>

#include "bench/measure.h"
#include "default/telemetry/fault_messages.h"
#include "default/telemetry/monitor_decoder.h"

namespace tarvo::skarnvisor::bench {

namespace {

using Block = std::array<unsigned char, status_block::blockBytes>;

/// Every cell of every group is there and valid.
Block fullBlock() {
  Block block{};
  block[0] = 1;
  block[status_block::countOffset + 1] = 1;  // 256 cells
  for (std::size_t cell = 0; cell < 3 * MonitorTable::cellsAtMost; ++cell) {
    unsigned char *const at = block.data() + status_block::groupsOffset + cell * status_block::cellBytes;
    at[0] = static_cast<unsigned char>('0' + cell % 64);
    at[1] = static_cast<unsigned char>('0' + cell % 7);
    at[2] = 1;
  }
  return block;
}

/// What no decode can do without: reading each cell, and one text a number that is shown.
std::vector<NamedValue> plainRows(const Block &block, std::size_t shownRows) {
  std::vector<NamedValue> rows;
  rows.reserve(shownRows);
  for (std::size_t cell = 0; cell < 3 * MonitorTable::cellsAtMost; ++cell) {
    const unsigned char *const at = block.data() + status_block::groupsOffset + cell * status_block::cellBytes;
    if (at[2] != 0 && rows.size() < shownRows)
      rows.push_back({static_cast<int>(cell), {}, QString::number(double(at[0] | at[1] << 8), 'f', 2)});
  }
  return rows;
}

/// 100,000 packets with every code that there is.
std::vector<unsigned char> faultStorm(int packets) {
  std::vector<unsigned char> bytes;
  for (int i = 0; i < packets; ++i) {
    const auto code = static_cast<unsigned>(i % 800);
    bytes.insert(bytes.end(), {1, static_cast<unsigned char>(i % 8 << 5), 0x20, static_cast<unsigned char>(code),
                               static_cast<unsigned char>(code >> 8), 1});
  }
  return bytes;
}

}  // namespace

void addTelemetryMeasures(std::vector<Measure> &measures) {
  measures.push_back({"monitor_decode", "3 x 256 cells, all valid, through the largest boards: 73 rows", [] {
                        const auto block = std::make_shared<Block>(fullBlock());
                        const auto rntc = std::make_shared<ResistanceTable>();
                        const auto rows = decodeMonitor(block->data(), monitorBoards("OrnikaYF", 0), *rntc).size();
                        const auto store = std::make_shared<NamedValues>();
                        return Bodies{
                            [=] { store->replace(decodeMonitor(block->data(), monitorBoards("OrnikaYF", 0), *rntc)); },
                            [=] { store->replace(plainRows(*block, rows)); },
                        };
                      }});
  measures.push_back({"fault_messages", "100,000 packets of 6 bytes, 800 codes: 0.6 MB", [] {
                        constexpr int packets = 100'000;
                        const auto storm = std::make_shared<std::vector<unsigned char>>(faultStorm(packets));
                        const auto sum = std::make_shared<unsigned>(0);
                        return Bodies{
                            [=] { *sum += static_cast<unsigned>(faultRows(storm->data(), packets).size()); },
                            // Five passes over the bytes, as many as there are fields.
                            [=] {
                              for (int pass = 0; pass < 5; ++pass)
                                for (std::size_t i = 0; i < storm->size(); i += 6)
                                  if ((*storm)[i + 5] != 0) *sum += (*storm)[i + static_cast<std::size_t>(pass)];
                            },
                        };
                      }});
}

}  // namespace tarvo::skarnvisor::bench
