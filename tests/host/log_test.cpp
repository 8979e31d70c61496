#include "contracts/host/log.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <thread>
#include <vector>

#include "host/core/log/log_queue.h"
#include "tests/support/log_lines.h"

SKARN_LOG_SOURCE("tests/log");

namespace tarvo::skarnvisor {
namespace {

class LogTest : public testing::Test {
 protected:
  LogTest() { logger.setConsoleMask(0); }
  ~LogTest() override { logger.setConsoleMask(logDefaultMask); }
  std::vector<LogEntry> written() { return lines.entries(); }
  Logger &logger = Logger::GetInstance();
  test::LogLines lines;
};

TEST_F(LogTest, ALineArrivesWhole) {
  SKARN_LOG(LogLevel::Notice, "%d frames in %s\n", 12, "capture.pcap");
  const auto lines = written();
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(lines[0].message, "12 frames in capture.pcap");
  EXPECT_EQ(lines[0].source, "tests/log");
  EXPECT_EQ(lines[0].function, "TestBody");
  EXPECT_EQ(lines[0].level, LogLevel::Notice);
  EXPECT_GT(lines[0].line, 0);
}

TEST_F(LogTest, LongAndMissingTextIsCutNotRead) {
  const std::string text(5000, 'x');
  logger.AddToQueue(LogLevel::Information, nullptr, 0, text.c_str(), "%s", text.c_str());
  const auto lines = written();
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(lines[0].message, text.substr(0, 1000));
  EXPECT_EQ(lines[0].function, text.substr(0, 63));
  EXPECT_EQ(lines[0].source, "");
}

TEST_F(LogTest, OnlyLevelsInTheMaskGoToTheConsole) {
  logger.setConsoleMask(logBit(LogLevel::Error));
  testing::internal::CaptureStderr();
  SKARN_LOG(LogLevel::Error, "seen");
  SKARN_LOG(LogLevel::Warning, "unseen");
  logger.flush();
  const std::string console = testing::internal::GetCapturedStderr();
  EXPECT_NE(console.find("error: seen"), std::string::npos) << console;
  EXPECT_EQ(console.find("unseen"), std::string::npos) << console;
}

TEST_F(LogTest, AFloodIsCountedAndNeverWaitedFor) {
  const std::uint64_t droppedBefore = logger.droppedCount();
  const std::uint64_t before = logger.lastSequence();
  constexpr int writers = 4;
  constexpr int each = 20'000;
  std::vector<std::thread> threads;
  for (int w = 0; w < writers; ++w) {
    threads.emplace_back([w] {
      for (int i = 0; i < each; ++i) SKARN_LOG(LogLevel::Information, "%d %d", w, i);
    });
  }
  for (std::thread &thread : threads) thread.join();
  logger.flush();
  const std::uint64_t taken = logger.lastSequence() - before;
  EXPECT_EQ(taken + logger.droppedCount() - droppedBefore, std::uint64_t{writers} * each)
      << "each line is written or counted";
  const auto ring = logger.entriesAfter(0);
  ASSERT_LE(ring.size(), Logger::ringCapacity);
  for (std::size_t i = 1; i < ring.size(); ++i) ASSERT_EQ(ring[i].sequence, ring[i - 1].sequence + 1);
}

TEST(LogQueue, AFullQueueRefusesAndAFreedCellIsUsedAgain) {
  LogQueue queue(4);
  int filled = 0;
  const auto write = [&] { return queue.write([&](LogRecord &record) { record.line = ++filled; }); };
  const auto read = [&] {
    int line = 0;
    queue.read([&](const LogRecord &record) { line = record.line; });
    return line;
  };
  for (int round = 0; round < 3; ++round) {
    const int first = filled + 1;
    for (int i = 0; i < 4; ++i) EXPECT_TRUE(write());
    EXPECT_FALSE(write());
    EXPECT_EQ(read(), first);
    EXPECT_TRUE(write());
    for (int i = 1; i <= 4; ++i) EXPECT_EQ(read(), first + i);
    EXPECT_EQ(read(), 0);
  }
}

}  // namespace
}  // namespace tarvo::skarnvisor
