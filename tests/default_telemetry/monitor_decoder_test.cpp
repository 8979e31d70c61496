#include "tests/default_telemetry/status_block.h"

#include "default/telemetry/board_cells.h"
#include "tools/sim/device_report.h"

#include <gtest/gtest.h>

#include <cmath>

namespace tarvo::skarnvisor::test {
namespace {

using namespace cells;

Texts decode(const Board &board, const BlockMaker &block) {
  const MonitorTable table(board);
  return texts(decodeMonitor(block.data(), {&table, nullptr, nullptr}, {}));
}

TEST(MonitorDecoder, ReadsEachKindOfCell) {
  const Board board{number(0, "plain(1%1)", 0.1F),
                    number(1, "moved", 0.5F, -66.0F),
                    signedNumber(2, "signed", 0.01F),
                    integer(3, "integer"),
                    wide(4, 5, "two words"),
                    wide(6, 9, "four words"),
                    text(10, 12, "letters"),
                    text(13, 14, "short"),
                    {15, 15, "other", 'x', 2.0F, 1.0F, 0},
                    thermistor(16, "no table")};
  BlockMaker block;
  block.cell(0, 0, 0xFFFF).cell(0, 1, 4).cell(0, 2, 0xFFFF).cell(0, 3, 0xFFFF);
  block.cell(0, 4, 0x5678).cell(0, 5, 0x1234);
  for (unsigned word = 6; word < 10; ++word) block.cell(0, word, 0xFFFF);
  block.letters(0, 10, "SI").letters(0, 11, "M ").letters(0, 12, "42").letters(0, 13, "ab").letters(0, 14, "cd");
  block.cell(0, 15, 0x8000).cell(0, 16, 2048);
  EXPECT_EQ(decode(board, block),
            (Texts{"0 plain(1℃)=6553.50", "1 moved=-64.00", "2 signed=-0.01", "3 integer=65535",
                   "5 two words=305419896", "9 four words=18446744073709551615", "12 letters=SIM 42", "14 short=abcd",
                   "15 other=-32768", "16 no table=-40.00"}));
}

TEST(MonitorDecoder, KeepsWhatIsUnfinishedToItself) {
  const Board board{wide(0, 1, "wide"), text(2, 4, "text"), integer(5, "after"), text(6, 6, "beginning")};
  BlockMaker only;
  only.cell(0, 0, 7).cell(0, 1, 1, 0);
  EXPECT_TRUE(decode(board, only).empty()) << "the last word is not valid";
  EXPECT_EQ(decode(board, only.cell(0, 5, 3)), (Texts{"5 after=10"})) << "the sum waits for the next finishing cell";

  BlockMaker closing;
  closing.letters(0, 4, "yz").letters(0, 6, "ab");
  EXPECT_EQ(decode(board, closing), (Texts{"4 text=yz"}));

  // A text and a sum that no cell of the group ends do not reach the next group.
  const MonitorTable first({text(2, 4, "text"), wide(8, 9, "wide")});
  const MonitorTable second({text(1, 2, "text"), integer(3, "number")});
  BlockMaker groups;
  groups.letters(0, 2, "AB").cell(0, 8, 5).letters(1, 2, "cd").cell(1, 3, 2);
  EXPECT_EQ(texts(decodeMonitor(groups.data(), {&first, &second, nullptr}, {})), (Texts{"2 text=cd", "3 number=2"}));
}

TEST(MonitorDecoder, ReadsNoMoreCellsThanThereAre) {
  std::vector<BoardCells> board;
  for (int cell = 0; cell < 256; ++cell) board.push_back(integer(cell, "cell"));
  for (const auto &[count, rows] : std::vector<std::pair<quint32, std::size_t>>{
           {0, 0}, {1, 1}, {255, 255}, {256, 256}, {257, 256}, {4'000'000'000U, 256}, {0xFFFFFFFFU, 256}}) {
    BlockMaker block(count);
    for (unsigned cell = 0; cell < 256; ++cell) block.cell(0, cell, 1).cell(2, cell, 1);
    const MonitorTable table(board);
    // The last group ends with the block; reading on would leave the array.
    EXPECT_EQ(decodeMonitor(block.data(), {nullptr, nullptr, &table}, {}).size(), rows) << count;
  }
}

TEST(MonitorDecoder, TakesTemperaturesFromBetweenTheEntriesOfTheTable) {
  ResistanceTable table;
  for (int i = 0; i < ResistanceTable::size; ++i) {
    const auto place = static_cast<std::size_t>(i);
    table.temperatures[place] = -40.0F + static_cast<float>(i) * 0.5F;
    table.resistances[place] = 200.0F * std::exp(-0.02F * static_cast<float>(i));
  }
  const auto rawOf = [](double r) { return static_cast<quint16>(std::lround(4096.0 * r / (r + 2.2))); };
  for (const double celsius : {-30.0, 0.0, 25.0, 90.0}) {
    const double r = 200.0 * std::exp(-0.02 * (celsius + 40.0) / 0.5);
    EXPECT_NEAR(thermistorCelsius(rawOf(r), table), celsius, 0.6) << celsius;
  }
  // Halfway between two entries, whatever raw is nearest: r = 2.2 at half of the full scale.
  ResistanceTable two;
  two.temperatures = {10.0F, 20.0F};
  two.resistances = {3.2F, 1.2F};
  EXPECT_FLOAT_EQ(thermistorCelsius(2048, two), 15.0F);
  EXPECT_EQ(thermistorCelsius(4096, two), -40.0F) << "an open circuit";
  EXPECT_EQ(thermistorCelsius(4000, two), -40.0F) << "colder than the first entry";
  EXPECT_EQ(thermistorCelsius(0xFFFF, two), -40.0F) << "beyond the full scale";
  EXPECT_EQ(thermistorCelsius(0, table), -40.0F) << "hotter than the last entry";
}

struct TypeRow {
  const char *type;
  int variant;
  std::array<std::size_t, 3> rows;  ///< that a full block shows of each group
  const char *first;                ///< name of the first row
};

constexpr TypeRow typeRows[]{
    {"Ornika210", 0, {50, 21, 1}, "Temp_RFB_1(0.1℃)"},
    {"OrnikaAura", 129, {50, 21, 1}, "Temp_RFB_1(0.1℃)"},
    {"Ornika70S_plusInfo", 0, {50, 21, 1}, "Temp_RFB_1(0.1℃)"},
    {"Ornika44S_plusInfo", 0, {50, 21, 1}, "Temp_RFB_1(0.1℃)"},
    {"WG9", 0, {34, 9, 1}, "Temp_TMB_FPGA(0.1℃)"},
    {"WG9", 128, {21, 10, 1}, "Temp_TMB_FPGA(0.1℃)"},
    {"WG9", 129, {23, 13, 1}, "Temp_TMB_FPGA(0.1℃)"},
    {"WG9", 130, {34, 9, 1}, "Temp_TMB_FPGA(0.1℃)"},
    {"OrnikaYF", 0, {53, 19, 1}, "Temp_RFB_1(0.1℃)"},
    {"OrnikaYFN", 0, {53, 19, 1}, "Temp_RFB_1(0.1℃)"},
    {"VD8", 0, {15, 14, 0}, "Temp_RX(1℃)"},
    {"VD2", 0, {16, 0, 0}, "motor speed(rpm)"},
    {"VD5_Serial", 0, {25, 0, 0}, "Motor Speed"},
    {"OrnikaZC", 0, {45, 0, 0}, "Temp_RFB_1(0.1℃)"},
    {"OrnikaZC8", 0, {20, 0, 0}, "Temp_TX_AVE(℃)"},
    {"OrnikaZC8Special", 0, {20, 0, 0}, "Temp_TX_AVE(℃)"},
};

TEST(MonitorBoards, ASimulatedLidarFillsEveryRowOfItsTables) {
  for (const TypeRow &row : typeRows) {
    const auto variant = static_cast<quint8>(row.variant);
    const auto block = lidar::sim::statusBlock(row.type, variant, 1.5);
    const MonitorBoards boards = monitorBoards(row.type, variant);
    for (std::size_t group = 0; group < boards.size(); ++group) {
      MonitorBoards one{};
      one[group] = boards[group];
      const auto rows = decodeMonitor(block.data(), one, {});
      EXPECT_EQ(rows.size(), row.rows[group]) << row.type << " " << row.variant << ", group " << group;
      if (group == 0 && !rows.empty()) {
        EXPECT_EQ(rows.front().name, QString::fromUtf8(row.first)) << row.type;
      }
      for (const NamedValue &shown : rows) EXPECT_FALSE(shown.value.toString().isEmpty()) << shown.name.toStdString();
    }
  }
  for (const char *family : {"KR2", "KR9", "LM", "LMQ"}) {
    const auto block = lidar::sim::statusBlock(family, 0, 1.5);
    EXPECT_GE(decodeMonitor(block.data(), familyMonitorBoards(family), {}).size(), 48U) << family;
  }
}

TEST(MonitorBoards, TypesAreComparedAsAWhole) {
  for (const char *type : {"", "ornika210", "Ornika210 ", "Ornika21", "WG", "VD8x", "KR2", "LM"})
    EXPECT_EQ(monitorBoards(type, 0), MonitorBoards{}) << type;
  EXPECT_EQ(familyMonitorBoards("VD8"), MonitorBoards{});
}

TEST(MonitorBoards, BoardsDifferWhereTheirHardwareDoes) {
  EXPECT_EQ(boards::boardA().rows().size(), 69U);
  for (const unsigned cell : {13U, 18U, 19U, 21U, 22U, 28U, 35U}) EXPECT_EQ(boards::boardB2().find(cell), nullptr);
  EXPECT_NE(boards::boardB3().find(18), nullptr);
  EXPECT_EQ(boards::boardB3().find(21), nullptr);
  EXPECT_EQ(boards::boardC().find(131)->kind, 's') << "begins a text that nothing ends";
  EXPECT_EQ(boards::bottomBoardC().find(224), nullptr);
  EXPECT_EQ(boards::boardE().find(7)->offset, -66.0F);
  EXPECT_EQ(boards::boardA().find(256), nullptr);
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
