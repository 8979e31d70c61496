#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <limits>
#include <stdexcept>

#include "default/point_files/readers/pcd_fields.h"
#include "default/point_files/readers/pcd_file_reader.h"
#include "tests/default_point_files/point_file_fixture.h"

namespace tarvo::skarnvisor {
namespace {

using namespace test;
using testing::HasSubstr;

struct Read {
  PcdFileReader reader;
  bool good = false;
  std::string report;

  explicit Read(const std::string &bytes) {
    const std::string path = writeFile("read.pcd", bytes);
    testing::internal::CaptureStdout();
    try {
      good = reader.read(path);
    } catch (...) {
      std::fflush(stdout);
      testing::internal::GetCapturedStdout();
      throw;
    }
    std::fflush(stdout);
    report = testing::internal::GetCapturedStdout();
  }
  [[nodiscard]] std::size_t count() const { return reader.points().size(); }
  [[nodiscard]] const PcdPoint &operator[](std::size_t i) const { return reader.points()[i]; }
};

TEST(PcdReader, HeaderWordsInEitherSpellingWithCommentsAndCarriageReturns) {
  const Read read(
      "# a comment\r\n\r\nVERSION .7\r\nFIELDS x y\r\nFIELDS z ring\r\nSIZES 4 4 4 2\r\nTYPES F F F U\r\n"
      "COUNTS 1 1 1 1\r\nWIDTH 2\r\nHEIGHT 1\r\nVIEWPOINT 0 0 0 1 0 0 0\r\nCOLOR blue\r\nPOINTS 2\r\nDATA ascii\r\n"
      "1 2 3 4\r\n# between\r\n\r\n5 6 7 8");
  EXPECT_TRUE(read.good);
  EXPECT_EQ(read.report, "");
  ASSERT_EQ(read.count(), 2U);
  EXPECT_EQ(read[1].z, 7.0F);
  EXPECT_EQ(read[1].ring, 8);
  const PcdHeader &header = read.reader.header();
  EXPECT_EQ(header.version, ".7");
  EXPECT_EQ(header.types.size(), 4U);
  EXPECT_EQ(header.viewpoint.size(), 7U);
  EXPECT_TRUE(read.reader.hasField("ring"));
  EXPECT_FALSE(read.reader.hasField("Ring"));
}

TEST(PcdReader, TextGivesAPointForEveryLineWhateverTheHeaderCounts) {
  for (const char *points : {"0", "1", "4294967295", "-4", "99999999999"}) {
    const Read read(pcdText("x y z", "4 4 4", "F F F", points, "ascii", "1 2 3\n4 5 6\n7 8 9\n"));
    EXPECT_TRUE(read.good) << points;
    EXPECT_EQ(read.count(), 3U) << points;
  }
  const Read strange(pcdText("x", "4", "F", "1", "ASCII_or_so", "5\n"));
  EXPECT_EQ(strange.count(), 1U) << "an unknown data word reads as ascii";
}

TEST(PcdReader, ABadTokenLeavesTheRestOfItsLineAtZero) {
  const Read read(pcdText("x colour y ring rowId z", "4 4 4 2 2 4", "F F F U U F", "5", "ascii",
                          "1 9 2 3 4 5\n1 red 2 3 4 5\n1 9 2 -1 70000 5\n1 9\nnan 0 inf 1 2 3 99 98\n"));
  ASSERT_EQ(read.count(), 5U);
  EXPECT_EQ(read[0].z, 5.0F);
  EXPECT_EQ(read[0].rowId, 4);
  EXPECT_EQ(read[1].x, 1.0F);
  EXPECT_EQ(read[1].y, 0.0F);
  EXPECT_EQ(read[2].ring, 65535);
  EXPECT_EQ(read[2].rowId, 0);
  EXPECT_EQ(read[2].z, 0.0F);
  EXPECT_EQ(read[3].y, 0.0F);
  EXPECT_TRUE(std::isnan(read[4].x) && std::isinf(read[4].y));
}

TEST(PcdReader, CountsThatDisagreeAreNamed) {
  const Read read("FIELDS x\nSIZE 4\nTYPE F\nWIDTH 10\nHEIGHT 10\nPOINTS 2\nDATA binary\n" + bytesOf(1.0F) +
                  bytesOf(2.0F) + "abc");
  EXPECT_EQ(read.report, "警告: 点云数据大小不匹配 (宽度=10, 高度=10, 点数=2)，将使用 POINTS 值\n");
  ASSERT_EQ(read.count(), 2U);
  EXPECT_EQ(read[1].x, 2.0F);
  // 65536 x 65536 is 0 in 32 bits.
  EXPECT_THAT(Read("WIDTH 65536\nHEIGHT 65536\nPOINTS 0\nDATA ascii\n").report, HasSubstr("点数=0"));
}

TEST(PcdReader, BinaryTakesTheWholeRecordsThatTheFileHolds) {
  const std::string data = bytesOf(1.0F) + bytesOf(2.0F) + bytesOf(3.0F) + "xy";
  const Read all(pcdText("x", "4", "F", "3", "binary", data));
  EXPECT_EQ(all.report, "");
  EXPECT_EQ(all.count(), 3U);
  const Read fewer(pcdText("x", "4", "F", "4294967295", "binary", data));
  EXPECT_TRUE(fewer.good);
  EXPECT_EQ(fewer.report, "警告: Binary PCD 文件数据不足 (声明点数=4294967295, 实际可读点数=3)\n");
  EXPECT_EQ(fewer.count(), 3U);
  EXPECT_EQ(Read(pcdText("x", "4", "F", "0", "binary", data)).count(), 0U);
  EXPECT_EQ(Read(pcdText("x", "4", "F", "2", "binary", "")).count(), 0U);
}

TEST(PcdReader, EveryTypeAndWidthOfABinaryField) {
  struct Case {
    char type;
    int size;
    std::string bytes;
    float asFloat;
    std::uint16_t asWord;
  };
  const Case cases[] = {
      {'I', 1, bytesOf(std::int8_t{-1}), -1.0F, 65535},
      {'i', 2, bytesOf(std::int16_t{-300}), -300.0F, 65236},
      {'I', 4, bytesOf(std::int32_t{-70000}), -70000.0F, 61072},
      {'i', 8, bytesOf(std::int64_t{-5'000'000'000}), -5e9F, static_cast<std::uint16_t>(-5'000'000'000)},
      {'U', 1, bytesOf(std::uint8_t{200}), 200.0F, 200},
      {'u', 2, bytesOf(std::uint16_t{65535}), 65535.0F, 65535},
      {'U', 4, bytesOf(std::uint32_t{4'000'000'000}), 4e9F, 10240},
      {'u', 8, bytesOf(std::uint64_t{1} << 63), 9223372036854775808.0F, 0},
      {'F', 4, bytesOf(3.9F), 3.9F, 3},
      {'f', 4, bytesOf(-1.9F), -1.9F, 65535},
      {'f', 8, bytesOf(70000.7), 70000.7F, 4464},
      {'F', 4, bytesOf(std::numeric_limits<float>::infinity()), std::numeric_limits<float>::infinity(), 0},
      {'F', 2, bytesOf(std::uint16_t{0x3c00}), 0.0F, 0},
      {'I', 3, "abc", 0.0F, 0},
      {'X', 4, bytesOf(1.0F), 0.0F, 0},
  };
  for (const Case &c : cases) {
    EXPECT_EQ(readFieldAsFloat(c.type, c.size, c.bytes.data()), c.asFloat) << c.type << c.size;
    EXPECT_EQ(readFieldAsU16(c.type, c.size, c.bytes.data()), c.asWord) << c.type << c.size;
    const std::string size = std::to_string(c.size);
    const Read read(pcdText("intensity ring", size + " " + size, std::string{c.type, ' ', c.type}, "1", "binary",
                            c.bytes + c.bytes));
    ASSERT_EQ(read.count(), 1U) << c.type << c.size;
    EXPECT_EQ(read[0].intensity, c.asFloat) << c.type << c.size;
    EXPECT_EQ(read[0].ring, c.asWord) << c.type << c.size;
  }
  EXPECT_TRUE(std::isnan(readFieldAsFloat('F', 4, bytesOf(std::nanf("")).data())));
  EXPECT_EQ(readFieldAsU16('F', 4, bytesOf(std::nanf("")).data()), 0);
}

TEST(PcdReader, ElementsThatAreSkippedRepeatedOrNamelessKeepTheirRoom) {
  const std::string data = bytesOf(1.0F) + std::string(12, 'n') + bytesOf(std::uint16_t{7}) + bytesOf(2.0F);
  const Read skipped(
      "FIELDS y normal ring _ x\nSIZE 4 4 2 0 4\nTYPE F F U F F\nCOUNT 1 3 1 1 1\nPOINTS 1\nDATA binary\n" + data);
  ASSERT_EQ(skipped.count(), 1U);
  EXPECT_EQ(skipped[0].ring, 7);
  EXPECT_EQ(skipped[0].x, 2.0F);
  const Read read(pcdText("x", "4 2", "F", "2", "binary", bytesOf(1.0F) + "ab" + bytesOf(2.0F) + "cd"));
  ASSERT_EQ(read.count(), 2U);
  EXPECT_EQ(read[1].x, 2.0F);
}

TEST(PcdReader, HeadersThatDescribeNoRecordAreRefusedOrEmpty) {
  const std::string end = "\nWIDTH 2\nHEIGHT 1\nPOINTS 2\nDATA binary\n" + std::string(64, 'a');
  for (const char *head : {"FIELDS x y z\nSIZE 4 4\nTYPE F F F", "FIELDS x y\nSIZE 4 4\nTYPE F",
                           "FIELDS x y\nSIZE 4 4\nTYPE F F\nCOUNT 1", "FIELDS x\nSIZE -4\nTYPE F",
                           "FIELDS x\nSIZE 4\nTYPE F\nCOUNT -1", "FIELDS x\nSIZE 2000000000\nTYPE F\nCOUNT 2000000000"})
    EXPECT_THROW(Read{head + end}, std::runtime_error) << head;
  for (const char *head : {"FIELDS x\nSIZE 0\nTYPE F", "FIELDS x\nSIZE 4\nTYPE F\nCOUNT 0", "SIZE 4\nTYPE F", ""}) {
    const Read read(head + end);
    EXPECT_TRUE(read.good) << head;
    EXPECT_EQ(read.count(), 0U) << head;
  }
}

TEST(PcdReader, FilesThatAreNoPcdAtAll) {
  EXPECT_EQ(Read("").count(), 0U);
  EXPECT_EQ(Read(std::string(3, '\0')).count(), 0U);
  EXPECT_EQ(Read("0.1 0.2 0.3\n0.4 0.5 0.6\n").count(), 0U) << "no DATA line: the data begin at the end";
  EXPECT_EQ(Read(std::string(300'000, 'x')).count(), 0U);
  EXPECT_EQ(Read("FIELDS x\nSIZE 4\nTYPE F\nPOINTS 1\nDATA").count(), 0U);
  PcdFileReader reader;
  try {
    static_cast<void>(reader.read("no/such/file.pcd"));
    ADD_FAILURE() << "a missing file was read";
  } catch (const std::runtime_error &error) {
    EXPECT_STREQ(error.what(), "无法打开文件: no/such/file.pcd");
  }
  EXPECT_THROW(static_cast<void>(reader.read(".")), std::runtime_error);
}

TEST(PcdReader, CompressedColumnsBecomePoints) {
  const std::string columns = bytesOf(1.0F) + bytesOf(2.0F) + bytesOf(std::uint16_t{7}) + bytesOf(std::uint16_t{8});
  const std::string section = compressedSection(lzfLiterals(columns), 12);
  const Read read(pcdText("x ring", "4 2", "F U", "2", "binary_compressed", section));
  EXPECT_TRUE(read.good);
  ASSERT_EQ(read.count(), 2U);
  EXPECT_EQ(read[1].x, 2.0F);
  EXPECT_EQ(read[0].ring, 7);
  EXPECT_EQ(read[1].ring, 8);
}

TEST(PcdReader, CompressedFaults) {
  const std::string columns(12, 'a');
  const auto file = [](const std::string &section, const char *points = "3") {
    return pcdText("x", "4", "F", points, "binary_compressed", section);
  };
  const std::string good = compressedSection(lzfLiterals(columns), 12);
  struct Case {
    const char *what;
    std::string bytes;
    const char *report;
  };
  const Case cases[] = {
      {"one byte short", file(good.substr(0, good.size() - 1)), "错误: 文件大小不匹配 (数据开始位置="},
      {"one byte more", file(good + "x"), "错误: 文件大小不匹配 (数据开始位置="},
      {"a page of zeros more", file(good + std::string(4096, '\0')), "错误: 文件大小不匹配 (数据开始位置="},
      {"no words", file("abc"), "错误: 文件大小不匹配 (数据开始位置="},
      {"other size than the points", file(good, "4"), "错误: 解压数据大小不匹配 (解压大小=12, 预期大小=16)\n"},
      {"nothing packed", file(compressedSection("", 12)), "解压失败\n"},
      {"four billion", file(compressedSection(lzfLiterals(columns), 4294967292U), "1073741823"), "解压失败\n"},
      {"reference before the start", file(compressedSection(std::string("\x20\x05", 2), 12)), "解压失败\n"},
  };
  for (const Case &c : cases) {
    const Read read(c.bytes);
    EXPECT_FALSE(read.good) << c.what;
    EXPECT_THAT(read.report, HasSubstr(c.report)) << c.what;
    EXPECT_EQ(read.count(), 0U) << c.what;
  }
  EXPECT_EQ(Read(file(compressedSection("", 0), "0")).count(), 0U);
  EXPECT_EQ(Read(file(good + std::string(4095, '\0'))).count(), 3U) << "the filling of a last page is no fault";
}

TEST(PcdReader, RecordsWhoseTotalWrapsTo0AreRefused) {
  const auto repeated = [](const std::string &word) {
    std::string words;
    for (int i = 0; i < 4096; ++i) words += " " + word;  // of 2^32 bytes each, times 2^20 points: 2^64
    return words;
  };
  EXPECT_THROW(Read("FIELDS" + repeated("x") + "\nSIZE" + repeated("65536") + "\nTYPE" + repeated("F") + "\nCOUNT" +
                    repeated("65536") + "\nPOINTS 1048576\nDATA binary_compressed\n" + compressedSection("", 0)),
               std::runtime_error);
}

}  // namespace
}  // namespace tarvo::skarnvisor
