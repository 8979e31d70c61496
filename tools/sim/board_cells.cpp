#include "tools/sim/board_cells.h"

#include <algorithm>

namespace tarvo::lidar::sim {
namespace {

// Numbers are what the sensors of a lidar read at work, in the unit of the cell: 0.1 degree, 1 mA, 0.01 V and so on.

const Board boardA{{{0, 9, 385, 6, 8},
                    {10, 15, 420, 35, 12},
                    {16, 21, 3290, 190, 9},
                    {22, 25, 1002, 260, 4},
                    {26, 27, 1210, 150, 6},
                    {44, 44, 408, 0, 6},
                    {45, 52, 1, 1, 0},
                    {53, 54, 391, 5, 6},
                    {55, 56, 1, 4, 0},
                    {65, 67, 402, 5, 6},
                    {68, 68, 2, 0, 0},
                    {128, 131, 0x3A41, 0x0101, 0},
                    {132, 134, 398, 8, 4}},
                   {{28, 31, "TS1.4.02"},
                    {32, 35, "TF2.0.17"},
                    {36, 39, "9f31c07a"},
                    {40, 43, "b2046e5d"},
                    {57, 64, "top-fw-2.0.17"}}};

const Board bottomBoardA{{{0, 0, 441, 0, 6},
                          {1, 1, 50, 0, 1},
                          {2, 2, 612, 0, 10},
                          {3, 3, 120, 0, 1},
                          {4, 4, 905, 0, 14},
                          {5, 6, 395, 7, 5},
                          {7, 7, 1211, 0, 4},
                          {8, 8, 1498, 0, 20},
                          {9, 9, 1815, 0, 22},
                          {14, 14, 312, 0, 3},
                          {15, 15, 334, 0, 4},
                          {16, 16, 120, 0, 1},
                          {17, 17, 482, 0, 12},
                          {18, 18, 121, 0, 1},
                          {19, 19, 702, 0, 9}},
                         {{10, 13, "BF1.9.03"},
                          {20, 27, "bottom-fw-1.9.3"},
                          {28, 35, "bottom-sw-1.4.2"},
                          {224, 239, "SIM0000000000000000000000000001"},
                          {240, 255, "SIM-64-STREET"}}};

const Board errorRate{{{0, 0, 0, 0, 3}}, {}};

const Board boardB{{{0, 7, 392, 5, 8}, {8, 23, 12, 3, 1}, {28, 35, 1, 1, 0}},
                   {{36, 39, "9f31c07a"}, {40, 43, "b2046e5d"}}};

const std::vector<TextRun> serialsB{{224, 239, "SIM0000000000000000000000000009"}, {240, 255, "SIM-WG9"}};

const Board bottomBoardB1{
    {{0, 2, 405, 6, 6}, {3, 3, 121, 0, 1}, {4, 4, 398, 0, 4}, {5, 5, 119, 0, 1}, {6, 6, 1480, 0, 20}}, serialsB};

const Board bottomBoardB2{{{0, 2, 405, 6, 6},
                           {3, 3, 121, 0, 1},
                           {4, 4, 398, 0, 4},
                           {5, 5, 119, 0, 1},
                           {6, 6, 1480, 0, 20},
                           {7, 7, 318, 0, 3}},
                          serialsB};

const Board bottomBoardB3{{{0, 2, 405, 6, 6},
                           {3, 3, 121, 0, 1},
                           {4, 4, 640, 0, 14},
                           {5, 5, 119, 0, 1},
                           {6, 6, 1480, 0, 20},
                           {7, 7, 318, 0, 3},
                           {8, 9, 431, 12, 5},
                           {14, 14, 3, 0, 1}},
                          serialsB};

const Board boardD{{{0, 0, 412, 0, 6},
                    {2, 3, 401, 4, 6},
                    {7, 7, 399, 0, 6},
                    {9, 9, 447, 0, 6},
                    {17, 21, 252, 60, 2},
                    {26, 27, 3300, 400, 8},
                    {45, 46, 501, 300, 2}},
                   {{40, 43, "b2046e5d"}, {57, 60, "TF2.0.17"}}};

const Board bottomBoardD{{{0, 0, 433, 0, 5},
                          {1, 3, 120, 105, 1},
                          {4, 7, 118, 90, 4},
                          {16, 18, 125, 640, 2},
                          {36, 36, 0, 0, 2},
                          {38, 38, 2, 0, 0},
                          {43, 43, 4, 0, 0}},
                         {{20, 27, "down-fw-1.9.3"}, {28, 35, "sw-1.4.2"}}};

const Board boardE{{{0, 0, 6000, 0, 6},
                    {1, 1, 1210, 0, 4},
                    {2, 2, 3950, 0, 30},
                    {3, 3, 85, 0, 3},
                    {4, 4, 1489, 0, 2},
                    {5, 5, 1580, 0, 3},
                    {6, 6, 3724, 0, 6},
                    {7, 7, 2246, 0, 5},
                    {8, 9, 2844, 110, 20},
                    {10, 11, 0, 1, 2}},
                   {{12, 15, "M1.4.020"}, {16, 18, "F2.0.1"}, {19, 20, "9f31"}, {21, 22, "4mm"}}};

const Board boardF{{{0, 0, 600, 0, 1},
                    {1, 1, 1210, 0, 4},
                    {2, 2, 39, 0, 1},
                    {3, 3, 85, 0, 3},
                    {4, 5, 1489, 91, 2},
                    {6, 7, 3724, 40, 6},
                    {8, 9, 41, 3, 1},
                    {10, 11, 512, 0, 0},
                    {20, 20, 0xC07A, 0, 0},
                    {21, 21, 0x9F31, 0, 0},
                    {22, 22, 47, 0, 1},
                    {23, 24, 0, 0, 0},
                    {25, 27, 38, 4, 1},
                    {28, 29, 1, 1, 0},
                    {30, 30, 1002, 0, 2}},
                   {{12, 15, "M1.4.020"}, {16, 19, "F2.0.170"}, {31, 34, "B2.0.040"}}};

const Board boardG{{{0, 4, 385, 6, 8},
                    {5, 5, 2, 0, 0},
                    {6, 6, 392, 0, 6},
                    {7, 8, 31, 2, 1},
                    {9, 10, 447, 5, 6},
                    {11, 12, 1, 11, 0},
                    {13, 15, 0, 0, 2},
                    {16, 18, 60000, 700, 90},
                    {19, 21, 3290, 190, 9},
                    {22, 25, 1002, 260, 4},
                    {26, 27, 1210, 150, 6},
                    {44, 44, 408, 0, 6},
                    {45, 52, 1, 1, 0},
                    {53, 54, 391, 5, 6},
                    {55, 56, 1, 4, 0}},
                   {{28, 31, "TS1.4.02"}, {32, 35, "TF2.0.17"}, {36, 39, "9f31c07a"}, {40, 43, "b2046e5d"}}};

const Board boardH{{{0, 2, 3950, 90, 30},
                    {3, 3, 1204, 0, 4},
                    {4, 7, 4010, 45, 30},
                    {8, 8, 1604, 0, 5},
                    {9, 9, 503, 0, 2},
                    {10, 10, 4120, 0, 30},
                    {11, 11, 3390, 0, 9},
                    {12, 13, 4402, 60, 25},
                    {14, 15, 1480, 20, 6},
                    {16, 16, 1211, 0, 4},
                    {17, 17, 3880, 0, 30},
                    {18, 20, 4, 0, 3},
                    {21, 21, 52'000, 0, 900},
                    {22, 23, 17, 0, 0}},
                   {}};

const Board boardK{{{0, 8, 3900, 60, 40},
                    {9, 9, 1302, 0, 5},
                    {10, 19, 3300, 120, 10},
                    {21, 26, 1100, 160, 6},
                    {27, 28, 4200, 90, 30},
                    {29, 34, 998, 440, 6},
                    {79, 82, 3120, 40, 12},
                    {85, 86, 3, 0, 0},
                    {92, 93, 1202, 90, 8}},
                   {{35, 42, "fpga-3.2.1"},
                    {43, 48, "sw-2.7.0"},
                    {49, 55, "para1-12"},
                    {56, 64, "para2-07"},
                    {65, 72, "5d8c21fe"},
                    {222, 223, "x1"},
                    {224, 239, "SIM0000000000000000000000000002"},
                    {240, 255, "SIM-KR9"}}};

const Board boardL{{{0, 25, 1800, 95, 20},
                    {29, 29, 4, 0, 0},
                    {30, 32, 4720, 60, 25},
                    {34, 34, 118, 0, 0},
                    {35, 35, 0xFFF4, 0, 8},  // twelve below zero
                    {37, 38, 1, 1, 0},
                    {47, 49, 11'990, 12, 9},
                    {55, 56, 1250, 20, 3},
                    {57, 58, 0, 0, 0},
                    {59, 67, 2400, 130, 15},
                    {68, 71, 0, 0, 0},
                    {72, 72, 0xFFA0, 0, 40},
                    {73, 78, 2100, 350, 12}},
                   {}};

const Board plainBoard{{{0, 34, 1200, 37, 12}}, {}};
const Board plainBottom{{{0, 27, 400, 21, 6}},
                        {{224, 239, "SIM0000000000000000000000000000"}, {240, 255, "SIM-LIDAR"}}};

constexpr int anyVariant = -1;

struct TypeRow {
  std::vector<std::string_view> types;  ///< empty: any other
  int variant;
  BoardSet boards;
};

const std::vector<TypeRow> &typeRows() {
  static const std::vector<TypeRow> rows{
      {{"KR2", "Ornika210", "OrnikaAura", "Ornika70S_plusInfo", "Ornika44S_plusInfo", "OrnikaYF", "OrnikaYFN", "LM"},
       anyVariant,
       {&boardA, &bottomBoardA, &errorRate}},
      {{"WG9"}, 128, {&boardB, &bottomBoardB2, &errorRate}},
      {{"WG9"}, 129, {&boardB, &bottomBoardB3, &errorRate}},
      {{"WG9"}, anyVariant, {&boardB, &bottomBoardB1, &errorRate}},
      {{"VD8"}, anyVariant, {&boardD, &bottomBoardD, nullptr}},
      {{"VD2"}, anyVariant, {&boardE, nullptr, nullptr}},
      {{"VD5_Serial"}, anyVariant, {&boardF, nullptr, nullptr}},
      {{"OrnikaZC"}, anyVariant, {&boardG, nullptr, nullptr}},
      {{"OrnikaZC8", "OrnikaZC8Special"}, anyVariant, {&boardH, nullptr, nullptr}},
      {{"KR9"}, anyVariant, {&boardK, nullptr, nullptr}},
      {{"LMQ"}, anyVariant, {&boardL, nullptr, nullptr}},
      {{}, anyVariant, {&plainBoard, &plainBottom, &errorRate}},
  };
  return rows;
}

}  // namespace

const BoardSet &boardsOf(std::string_view type, std::uint8_t variant) {
  const auto &rows = typeRows();
  const auto found = std::find_if(rows.begin(), rows.end(), [&](const TypeRow &row) {
    const bool named = row.types.empty() || std::find(row.types.begin(), row.types.end(), type) != row.types.end();
    return named && (row.variant == anyVariant || row.variant == variant);
  });
  return found->boards;
}

}  // namespace tarvo::lidar::sim
