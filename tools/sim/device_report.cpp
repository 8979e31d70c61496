#include "tools/sim/device_report.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "tools/sim/board_cells.h"
#include "tools/sim/noise.h"

namespace tarvo::lidar::sim {
namespace {

void putCell(StatusBlock &block, unsigned group, unsigned cell, std::uint16_t value) {
  std::uint8_t *at = block.data() + 6 + (group * 256 + cell) * 3;
  wire::storeLittle(at, value);
  at[2] = 1;
}

void putNumbers(StatusBlock &block, unsigned group, const CellRun &run, double seconds) {
  for (unsigned cell = run.first; cell <= run.last; ++cell) {
    const double wander = run.drift * (1.0 + std::sin(seconds * 0.7 + cell)) / 2.0;
    putCell(block, group, cell,
            static_cast<std::uint16_t>(run.value + run.step * (cell - run.first) + std::lround(wander)));
  }
}

void putText(StatusBlock &block, unsigned group, const TextRun &run) {
  const auto letter = [&run](std::size_t at) {
    return at < run.text.size() ? static_cast<std::uint8_t>(run.text[at]) : 0x20u;
  };
  for (unsigned cell = run.first; cell <= run.last; ++cell) {
    const std::size_t at = 2 * std::size_t{cell - run.first};
    putCell(block, group, cell, static_cast<std::uint16_t>(letter(at) | letter(at + 1) << 8));
  }
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

StatusBlock statusBlock(std::string_view type, std::uint8_t variant, double seconds) {
  StatusBlock block{};
  block[0] = 1;
  block[1] = variant;
  wire::storeLittle(block.data() + 2, std::uint32_t{256});
  const BoardSet &boards = boardsOf(type, variant);
  for (unsigned group = 0; group < boards.size(); ++group) {
    if (boards[group] == nullptr) continue;
    for (const CellRun &run : boards[group]->cells) putNumbers(block, group, run, seconds);
    for (const TextRun &run : boards[group]->texts) putText(block, group, run);
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
