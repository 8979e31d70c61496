#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "contracts/host/log.h"
#include "default/point_files/readers/bin_reader.h"
#include "default/point_files/readers/ply_reader.h"
#include "tests/default_point_files/point_file_fixture.h"

namespace tarvo::skarnvisor {
namespace {

using namespace test;

PlyPoints read(const std::string &bytes) { return readPly(writeFile("read.ply", bytes)); }

std::string messageOf(const std::string &bytes) {
  try {
    static_cast<void>(read(bytes));
  } catch (const std::runtime_error &error) {
    return error.what();
  }
  return "nothing was thrown";
}

template <typename T>
std::string bigEndian(T value) {
  std::string bytes = bytesOf(value);
  std::reverse(bytes.begin(), bytes.end());
  return bytes;
}

const std::string fiveFloats =
    "property float x\nproperty float y\nproperty float z\nproperty float intensity\nproperty float confidence\n";

std::string head(const std::string &format, const std::string &rest) {
  return "ply\nformat " + format + " 1.0\ncomment a line\nobj_info another\n" + rest + "end_header\n";
}

TEST(PlyReader, TextWithOtherElementsListsAndBlankLines) {
  const std::string elements =
      "element camera 2\nproperty list uchar int views\nproperty double zoom\nelement vertex 3\nproperty uchar red\n" +
      fiveFloats + "property list uchar float extra\nelement face 1\nproperty list uchar int vertex_indices\n";
  const PlyPoints points = read(head("ascii", elements) +
                                "2 5 6 1.5\n0 2.5\n"
                                "255 1 2 3 4 5 0\n\n7 1.5 2.5 3.5 4.9 -5.5 2 8 9\r\n1 nan inf 0 0 0 1 1\n3 0 1 2\n");
  ASSERT_EQ(points.size(), 3U);
  EXPECT_EQ(points[0].confidence, 5.0F);
  EXPECT_EQ(points[1].x, 1.5F);
  EXPECT_EQ(points[1].confidence, -5.5F);
  EXPECT_TRUE(std::isnan(points[2].x));
}

TEST(PlyReader, BinaryInBothByteOrdersWithEveryType) {
  const std::string elements =
      "element lead 1\nproperty list ushort double skipped\nelement vertex 2\nproperty double x\nproperty int8 y\n"
      "property uint16 z\nproperty int intensity\nproperty uchar confidence\nproperty float64 more\n";
  const auto record = [](auto order, double x, std::int8_t y, std::uint16_t z, std::int32_t i, std::uint8_t c) {
    return order(x) + order(y) + order(z) + order(i) + order(c) + order(0.25);
  };
  const auto little = [](auto value) { return bytesOf(value); };
  const auto big = [](auto value) { return bigEndian(value); };
  const auto check = [&](const std::string &format, auto order) {
    const PlyPoints points = read(head(format, elements) + order(std::uint16_t{2}) + order(1.0) + order(2.0) +
                                  record(order, 1.5, -3, 60000, 77, 200) + record(order, -2.5, 4, 5, -6, 7));
    ASSERT_EQ(points.size(), 2U) << format;
    EXPECT_EQ(points[0].x, 1.5F) << format;
    EXPECT_EQ(points[0].y, -3.0F) << format;
    EXPECT_EQ(points[0].z, 60000.0F) << format;
    EXPECT_EQ(points[1].intensity, -6.0F) << format;
    EXPECT_EQ(points[1].confidence, 7.0F) << format;
  };
  check("binary_little_endian", little);
  check("binary_big_endian", big);
}

TEST(PlyReader, BinaryVerticesWithListsAreWalked) {
  const std::string elements = "element vertex 3\nproperty list uchar short views\n" + fiveFloats;
  std::string data;
  for (int i = 0; i < 3; ++i) {
    data += bytesOf(static_cast<std::uint8_t>(i));
    for (int k = 0; k < i; ++k) data += bytesOf(std::int16_t{9});
    for (int k = 0; k < 5; ++k) data += bytesOf(static_cast<float>(10 * i + k));
  }
  const std::string header = head("binary_little_endian", elements);
  const PlyPoints points = read(header + data);
  ASSERT_EQ(points.size(), 3U);
  EXPECT_EQ(points[2].x, 20.0F);
  EXPECT_EQ(points[2].confidence, 24.0F);
  EXPECT_EQ(read(header + data.substr(0, data.size() - 1)).size(), 2U);
}

TEST(PlyReader, FilesThatEndEarlyOrClaimTooMuchGiveWhatTheyHold) {
  const std::string record(20, '\0');
  for (const char *count : {"4294967295", "999999999999999999", "3"}) {
    const std::string elements = std::string("element vertex ") + count + "\n" + fiveFloats;
    EXPECT_EQ(read(head("binary_little_endian", elements) + record + record + "abc").size(), 2U) << count;
    EXPECT_EQ(read(head("ascii", elements) + "1 2 3 4 5\n6 7 8 9 10").size(), 2U) << count;
  }
  EXPECT_TRUE(read(head("ascii", "element vertex 0\n" + fiveFloats) + "1 2 3 4 5\n").empty());
  EXPECT_TRUE(
      read(head("binary_big_endian", "element lead 4294967295\nproperty int a\nelement vertex 1\n" + fiveFloats) +
           record)
          .empty());
  EXPECT_TRUE(
      read(head("ascii", "element lead 999999999999999999\nproperty int a\nelement vertex 1\n" + fiveFloats) + "1\n2\n")
          .empty());
}

TEST(PlyReader, FaultsAreNamed) {
  using testing::StartsWith;
  EXPECT_EQ(messageOf(head("ascii", "element face 0\nproperty float x\n")), "PLY parser: no element with name: vertex");
  EXPECT_EQ(messageOf(head("ascii", "element vertex 0\nproperty float x\nproperty float y\nproperty float z\n")),
            "PLY parser: missing property intensity");
  EXPECT_EQ(messageOf(head("ascii", "element vertex 0\nproperty float x\nproperty list uchar float y\n")),
            "PLY parser: missing property y");
  const std::string broken[] = {
      "",
      "plyx\nend_header\n",
      "ply\nformat ascii 1.0\nelement vertex 1\n",
      head("weird", ""),
      head("ascii", "element vertex -1\n"),
      head("ascii", "element vertex\n"),
      head("ascii", "property float x\n"),
      head("ascii", "element vertex 1\nproperty half x\n"),
      head("ascii", "element vertex 1\nproperty list float int x\n"),
      head("ascii", "element vertex 1\nproperty float\n"),
      head("ascii", "garbage\n"),
      head("ascii", "element vertex 2\n" + fiveFloats) + "1 2 3 4 5\n1 2 three 4 5\n",
      head("ascii", "element vertex 1\n" + fiveFloats) + std::string("1 2\0003 4 5 6\n", 13),
  };
  for (const std::string &bytes : broken) EXPECT_THAT(messageOf(bytes), StartsWith("PLY parser: ")) << bytes;
  EXPECT_THROW(static_cast<void>(readPly("no/such/file.ply")), std::runtime_error);
}

TEST(PlyReader, CarriageReturnsInTheHeaderOfABinaryFile) {
  std::string header = head("binary_little_endian", "element vertex 1\n" + fiveFloats);
  for (std::size_t at = 0; (at = header.find('\n', at)) != std::string::npos; at += 2) header.insert(at, "\r");
  const PlyPoints points = read(header + bytesOf(1.0F) + bytesOf(2.0F) + bytesOf(3.0F) + bytesOf(4.0F) + bytesOf(5.0F));
  ASSERT_EQ(points.size(), 1U);
  EXPECT_EQ(points[0].confidence, 5.0F);
}

TEST(BinReader, BothRecordWidths) {
  BinFrame frame;
  ASSERT_EQ(readBin(writeFile("a.bin", bytesOf(std::uint32_t{2}) + binRecord(1, 2, 3, 40000, 5, 6) +
                                           binRecord(-1, -2, -3, 4, 50000, 0)),
                    frame),
            BinResult::read);
  ASSERT_EQ(frame.count, 2U);
  EXPECT_EQ(frame.point(0).intensity, 40000);
  EXPECT_EQ(frame.point(1).z, -3.0F);
  EXPECT_EQ(frame.point(1).confidence, 50000);
  EXPECT_EQ(frame.point(0).ring, 6);

  std::string brief = binRecord(1, 2, 3, 4, 5, 6);
  brief.erase(14, 2);
  ASSERT_EQ(readBin(writeFile("b.bin", bytesOf(std::uint32_t{1}) + brief), frame), BinResult::read);
  EXPECT_EQ(frame.point(0).intensity, 4);
  EXPECT_EQ(frame.point(0).confidence, 0);
  EXPECT_EQ(frame.point(0).ring, 6);
}

TEST(BinReader, SizesThatFitNeitherWidth) {
  const auto refusal = [](const std::string &bytes) {
    BinFrame frame;
    // Log lines of earlier tests are written by a thread of the log's own.
    Logger::GetInstance().flush();
    testing::internal::CaptureStderr();
    EXPECT_EQ(readBin(writeFile("c.bin", bytes), frame), BinResult::wrongSize);
    EXPECT_EQ(frame.count, 0U);
    return testing::internal::GetCapturedStderr();
  };
  EXPECT_EQ(refusal(bytesOf(std::uint32_t{2}) + std::string(34, 'a')),
            "Error: File size mismatch. Expected 40 or 36 bytes, got 38 bytes\n");
  EXPECT_EQ(refusal(bytesOf(std::uint32_t{4294967295U})),
            "Error: File size mismatch. Expected 77309411314 or 68719476724 bytes, got 4 bytes\n");
  EXPECT_EQ(refusal("abc"), "Error: File size mismatch. Expected " + std::to_string(4 + 18ULL * 0x636261) + " or " +
                                std::to_string(4 + 16ULL * 0x636261) + " bytes, got 3 bytes\n");
  EXPECT_EQ(refusal(""), "Error: File size mismatch. Expected 4 or 4 bytes, got 0 bytes\n");

  BinFrame frame;
  EXPECT_EQ(readBin(writeFile("d.bin", bytesOf(std::uint32_t{0})), frame), BinResult::read);
  EXPECT_EQ(frame.count, 0U);
  EXPECT_EQ(readBin("no/such/file.bin", frame), BinResult::notOpened);
}

}  // namespace
}  // namespace tarvo::skarnvisor
