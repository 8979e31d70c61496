#include "tools/sim/device_report.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "tools/sim/noise.h"

namespace tarvo::lidar::sim {
namespace {

/// Cells first to last hold value, value + step, value + 2 step, ...; `drift` is how much they wander.
struct CellRun {
  std::uint8_t group, first, last;
  std::uint16_t value, step, drift;
};

struct TextRun {
  std::uint8_t group, first, last;
  std::string_view text;
};

struct Board {
  std::vector<std::string_view> types;
  std::vector<CellRun> cells;
  std::vector<TextRun> texts;
};

const std::vector<Board> &boards() {
  static const std::vector<Board> all{
      {{"KR2", "Ornika210", "OrnikaAura", "Ornika70S_plusInfo", "Ornika44S_plusInfo", "OrnikaYF", "OrnikaYFN", "LM"},
       {{0, 0, 9, 385, 6, 8},      {0, 10, 15, 420, 35, 12}, {0, 16, 21, 3290, 190, 9}, {0, 22, 25, 1002, 260, 4},
        {0, 26, 27, 1210, 150, 6}, {0, 44, 44, 408, 0, 6},   {0, 45, 52, 1, 1, 0},      {0, 53, 54, 391, 5, 6},
        {0, 55, 56, 1, 4, 0},      {0, 65, 67, 402, 5, 6},   {0, 68, 68, 2, 0, 0},      {0, 132, 134, 398, 8, 4},
        {1, 0, 0, 441, 0, 6},      {1, 1, 1, 50, 0, 1},      {1, 2, 2, 612, 0, 10},     {1, 3, 3, 120, 0, 1},
        {1, 4, 4, 905, 0, 14},     {1, 5, 6, 395, 7, 5},     {1, 7, 7, 1211, 0, 4},     {1, 8, 8, 1498, 0, 20},
        {1, 9, 9, 1815, 0, 22},    {1, 14, 14, 312, 0, 3},   {1, 15, 15, 334, 0, 4},    {1, 16, 16, 120, 0, 1},
        {1, 17, 17, 482, 0, 12},   {1, 18, 18, 121, 0, 1},   {1, 19, 19, 702, 0, 9},    {2, 0, 0, 0, 0, 3}},
       {{0, 28, 31, "TS1.4.02"},
        {0, 32, 35, "TF2.0.17"},
        {0, 36, 39, "9f31c07a"},
        {0, 40, 43, "b2046e5d"},
        {0, 57, 64, "top-fw-2.0.17"},
        {1, 10, 13, "BF1.9.03"},
        {1, 20, 27, "bottom-fw-1.9.3"},
        {1, 28, 35, "bottom-sw-1.4.2"},
        {1, 224, 239, "SIM0000000000000000000000000001"},
        {1, 240, 255, "SIM-64-STREET"}}},
      {{"WG9"},
       {{0, 0, 6, 392, 5, 8},
        {0, 8, 23, 12, 3, 1},
        {0, 28, 35, 1, 1, 0},
        {1, 0, 2, 405, 6, 6},
        {1, 3, 3, 121, 0, 1},
        {1, 4, 4, 398, 0, 4},
        {1, 5, 5, 119, 0, 1},
        {1, 6, 6, 1480, 0, 20},
        {2, 0, 0, 0, 0, 3}},
       {{0, 36, 39, "9f31c07a"},
        {0, 40, 43, "b2046e5d"},
        {1, 224, 239, "SIM0000000000000000000000000009"},
        {1, 240, 255, "SIM-WG9"}}},
      {{"VD8"},
       {{0, 0, 0, 412, 0, 6},
        {0, 2, 3, 401, 4, 6},
        {0, 7, 7, 399, 0, 6},
        {0, 9, 9, 447, 0, 6},
        {0, 17, 21, 252, 60, 2},
        {0, 26, 27, 3300, 400, 8},
        {0, 45, 46, 501, 300, 2},
        {1, 0, 0, 433, 0, 5},
        {1, 1, 3, 120, 105, 1},
        {1, 4, 7, 118, 90, 4},
        {1, 16, 18, 125, 640, 2},
        {1, 36, 36, 0, 0, 2},
        {1, 38, 38, 2, 0, 0},
        {1, 43, 43, 4, 0, 0}},
       {{0, 40, 43, "b2046e5d"}, {0, 57, 60, "TF2.0.17"}, {1, 20, 27, "down-fw-1.9.3"}, {1, 28, 35, "sw-1.4.2"}}},
      {{"KR9"},
       {{0, 0, 8, 3900, 60, 40},
        {0, 9, 9, 1302, 0, 5},
        {0, 10, 19, 3300, 120, 10},
        {0, 21, 26, 1100, 160, 6},
        {0, 27, 28, 4200, 90, 30},
        {0, 29, 34, 998, 440, 6},
        {0, 79, 82, 3120, 40, 12},
        {0, 85, 86, 3, 0, 0},
        {0, 92, 93, 1202, 90, 8}},
       {{0, 35, 42, "fpga-3.2.1"},
        {0, 43, 48, "sw-2.7.0"},
        {0, 49, 55, "para1-12"},
        {0, 56, 64, "para2-07"},
        {0, 65, 72, "5d8c21fe"},
        {0, 222, 223, "x1"},
        {0, 224, 239, "SIM0000000000000000000000000002"},
        {0, 240, 255, "SIM-KR9"}}},
      {{},  // any other type: plain numbers in the cells that most boards use
       {{0, 0, 34, 1200, 37, 12}, {1, 0, 27, 400, 21, 6}, {2, 0, 0, 0, 0, 3}},
       {{1, 224, 239, "SIM0000000000000000000000000000"}, {1, 240, 255, "SIM-LIDAR"}}},
  };
  return all;
}

const Board &boardOf(std::string_view type) {
  const auto &all = boards();
  const auto found = std::find_if(all.begin(), all.end(), [type](const Board &board) {
    return board.types.empty() || std::find(board.types.begin(), board.types.end(), type) != board.types.end();
  });
  return *found;
}

void putCell(StatusBlock &block, unsigned group, unsigned cell, std::uint16_t value) {
  std::uint8_t *at = block.data() + 6 + (group * 256 + cell) * 3;
  wire::storeLittle(at, value);
  at[2] = 1;
}

std::span<std::uint8_t> addRecord(FaultBatch &batch) {
  ++batch.count;
  batch.bytes.resize(batch.bytes.size() + batch.recordSize);
  return std::span(batch.bytes).last(batch.recordSize);
}

/// Fault codes of the simulated lidar; which of them are up changes every few seconds.
std::uint32_t faultCode(std::uint32_t frame, unsigned index) {
  constexpr std::uint32_t codes[] = {0x0102, 0x0217, 0x1A03, 0x0440};
  return codes[(frame / 50 + index) % std::size(codes)];
}

void fillListRecord(std::span<std::uint8_t> record, std::uint32_t frame, unsigned index) {
  wire::storeLittle(record.data(), std::uint16_t{1027});
  record[2] = 3;
  record[25] = 2;
  record[26] = 1;
  record[27] = 2;
  wire::storeLittle(record.data() + 29, faultCode(frame, index));
}

void fillBlockageRecord(std::span<std::uint8_t> record, std::uint32_t frame) {
  wire::storeLittle(record.data(), std::uint16_t{1034});
  record[36] = frame / 40 % 3 == 2 ? 1 : 0;
  wire::storeLittle(record.data() + 40, static_cast<std::int16_t>(412 + frame % 17));
  for (unsigned segment = 0; segment < 8; ++segment) {
    record[42 + 3 * segment] = static_cast<std::uint8_t>((segment * 7) << 1 | (segment == frame / 40 % 8 ? 1 : 0));
    wire::storeLittle(record.data() + 43 + 3 * segment, static_cast<std::uint16_t>(100 + segment * 11));
  }
  record[66] = static_cast<std::uint8_t>(frame / 40 % 5);
}

void fillSegmentRecord(std::span<std::uint8_t> record, std::uint64_t timeNs, std::uint32_t frame) {
  wire::storeLittle(record.data(), std::uint16_t{1058});
  wire::storeLittle(record.data() + 9, static_cast<std::uint32_t>(timeNs / 1'000'000'000));
  wire::storeLittle(record.data() + 13, static_cast<std::uint32_t>(timeNs % 1'000'000'000));
  record[34] = static_cast<std::uint8_t>(frame);
  const std::uint32_t level = frame / 40 % 4;
  wire::storeLittle(record.data() + 37, level << 8 | level << 12 | (3 - level) << 16);
  wire::storeLittle(record.data() + 42, static_cast<std::int16_t>(41 + frame % 3));
  for (std::uint32_t segment = 0; segment < 8; ++segment)
    wire::storeLittle(record.data() + 44 + 4 * segment, (segment == level ? 1u << 31 : 0u) | (10 + segment) << 24 |
                                                            (20 + segment) << 16 | (segment * 300));
  record[76] = static_cast<std::uint8_t>(level * 20);
}

/// The records of the NB types with a pipeline of their own: 522 in nibbles for 49 segments, 525 in three-byte words.
void fillGridRecord(std::span<std::uint8_t> record, std::string_view type, std::uint64_t timeNs, std::uint32_t frame) {
  const bool words = type == "NB41-6_23";
  wire::storeLittle(record.data(), static_cast<std::uint16_t>(words ? 525 : 522));
  wire::storeLittle(record.data() + 33, static_cast<std::int16_t>(40 + frame % 4));
  record[35] = words ? 1 : 0x10;
  if (!words) {
    for (unsigned k = 0; k < 25; ++k) record[42 + k] = static_cast<std::uint8_t>(k % 5 == 0 ? 0x21 : 0x00);
    return;
  }
  wire::storeLittle(record.data() + 9, static_cast<std::uint32_t>(timeNs / 1'000'000'000));
  wire::storeLittle(record.data() + 13, static_cast<std::uint32_t>(timeNs % 1'000'000'000));
  record[39] = static_cast<std::uint8_t>(frame);
  for (unsigned k = 0; k < 5; ++k) record[40 + k] = static_cast<std::uint8_t>(10 * k);
  for (unsigned i = 0; i < 49; ++i) record[46 + 3 * i + 2] = static_cast<std::uint8_t>(i);
  record[193] = 30;
}

void fillShortRecord(std::span<std::uint8_t> record, std::uint32_t frame, unsigned index) {
  record[0] = 1;
  record[1] = static_cast<std::uint8_t>(2 << 5 | 1 << 3);
  record[2] = 2 << 4;
  wire::storeLittle(record.data() + 3, static_cast<std::uint16_t>(faultCode(frame, index)));
  record[5] = 1;
}

}  // namespace

StatusBlock statusBlock(std::string_view type, double seconds) {
  StatusBlock block{};
  block[0] = 1;
  wire::storeLittle(block.data() + 2, std::uint32_t{256});
  const Board &board = boardOf(type);
  for (const CellRun &run : board.cells) {
    for (unsigned cell = run.first; cell <= run.last; ++cell) {
      const double wander = run.drift * (1.0 + std::sin(seconds * 0.7 + cell)) / 2.0;
      putCell(block, run.group, cell,
              static_cast<std::uint16_t>(run.value + run.step * (cell - run.first) + std::lround(wander)));
    }
  }
  for (const TextRun &run : board.texts) {
    for (unsigned cell = run.first; cell <= run.last; ++cell) {
      const auto letter = [&](std::size_t at) {
        return at < run.text.size() ? static_cast<std::uint8_t>(run.text[at]) : 0x20u;
      };
      const std::size_t at = 2 * std::size_t{cell - run.first};
      putCell(block, run.group, cell, static_cast<std::uint16_t>(letter(at) | letter(at + 1) << 8));
    }
  }
  return block;
}

FaultBatch faultBatch(std::string_view type, std::uint64_t timeNs, std::uint32_t frame) {
  FaultBatch batch;
  const bool ownNbPipeline = type.starts_with("NB41-");
  const bool longRecords =
      (type.starts_with("KR") && !type.starts_with("KR8_")) || type.starts_with("NB") || type.starts_with("COLOR");
  batch.recordSize = longRecords ? wire::longFaultSize : wire::shortFaultSize;
  if (!longRecords) {
    for (unsigned i = 0; i < 3; ++i) fillShortRecord(addRecord(batch), frame, i % 2);
  } else if (ownNbPipeline) {
    fillGridRecord(addRecord(batch), type, timeNs, frame);
  } else if (type == "NB41X") {
    fillSegmentRecord(addRecord(batch), timeNs, frame);
  } else if (type == "KR2") {
    for (unsigned i = 0; i < 2; ++i) fillListRecord(addRecord(batch), frame, i);
  } else {
    fillBlockageRecord(addRecord(batch), frame);
  }
  return batch;
}

std::vector<wire::ImuSample> imuSamples(std::uint64_t frameTimeNs, double frameSeconds, std::uint64_t seed) {
  constexpr double samplesASecond = 100.0;
  std::vector<wire::ImuSample> samples;
  const auto count = static_cast<unsigned>(std::max(1.0, std::round(frameSeconds * samplesASecond)));
  for (unsigned i = 0; i < count; ++i) {
    Draw draw(seed, 900, frameTimeNs, i);
    wire::ImuSample sample;
    sample.timeSeconds = static_cast<double>(frameTimeNs) * 1e-9 + i / samplesASecond;
    sample.accelG = {0.004 * draw.gaussian(), 0.004 * draw.gaussian(), 1.0 + 0.004 * draw.gaussian()};
    sample.angularDegPerS = {0.08 * draw.gaussian(), 0.08 * draw.gaussian(), 0.08 * draw.gaussian()};
    sample.valid = 1;
    samples.push_back(sample);
  }
  return samples;
}

}  // namespace tarvo::lidar::sim
