// Files large enough to be read in parts, one a core: the parts must join as if there had been one.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <taskflow/taskflow.hpp>

#include "contracts/host/executor.h"
#include "default/point_files/readers/bin_reader.h"
#include "default/point_files/readers/parallel_parts.h"
#include "default/point_files/readers/pcd_file_reader.h"
#include "default/point_files/readers/ply_reader.h"
#include "default/point_files/readers/text_lines.h"
#include "tests/default_point_files/point_file_fixture.h"

namespace tarvo::skarnvisor {
namespace {

using namespace test;

constexpr int pointCount = 60'000;

/// Lines of very different lengths, some empty, some comments, so that a part's border falls inside each kind.
std::string textLines(std::mt19937 &random, bool comments) {
  std::string text;
  for (int i = 0; i < pointCount; ++i) {
    text += std::to_string(i) + " " + std::to_string(i) + ".25" + std::string(random() % 12, '0') + " -1 2 3";
    text += random() % 7 == 0 ? "\r\n" : "\n";
    if (random() % 50 == 0) text += "\n";
    if (comments && random() % 50 == 0) text += "# " + std::string(random() % 90, '7') + "\n";
  }
  return text;
}

TEST(LargeFiles, TextPointsKeepTheirOrderAcrossParts) {
  std::mt19937 random(5);
  const std::string pcd =
      pcdText("x y z intensity ring", "4 4 4 4 2", "F F F F U", "1", "ascii", textLines(random, true));
  PcdFileReader reader;
  ASSERT_GT(pcd.size(), 1024U * 1024U) << "too small for parts";
  testing::internal::CaptureStdout();
  ASSERT_TRUE(reader.read(writeFile("large.pcd", pcd)));
  testing::internal::GetCapturedStdout();
  ASSERT_EQ(reader.points().size(), static_cast<std::size_t>(pointCount));
  for (int i = 0; i < pointCount; ++i) {
    ASSERT_EQ(reader.points()[static_cast<std::size_t>(i)].x, static_cast<float>(i));
    ASSERT_EQ(reader.points()[static_cast<std::size_t>(i)].ring, 3);
  }

  const std::string header =
      "ply\nformat ascii 1.0\nelement vertex " + std::to_string(pointCount) +
      "\nproperty float x\nproperty float y\nproperty float z\nproperty float intensity\nproperty float confidence\n"
      "element face 1\nproperty list uchar int i\nend_header\n";
  const PlyPoints points = readPly(writeFile("large.ply", header + textLines(random, false) + "3 1 2 3\n"));
  ASSERT_EQ(points.size(), static_cast<std::size_t>(pointCount));
  for (int i = 0; i < pointCount; ++i) ASSERT_EQ(points[static_cast<std::size_t>(i)].x, static_cast<float>(i));
}

TEST(LargeFiles, EveryLineBelongsToExactlyOneRange) {
  std::mt19937 random(9);
  std::string text = "header\n";
  const std::uint64_t start = text.size();
  std::vector<std::string> lines;
  for (int i = 0; i < 400; ++i) {
    lines.push_back(std::string(random() % 4 == 0 ? 0 : random() % 60, static_cast<char>('a' + i % 26)));
    text += lines.back() + (i + 1 < 400 ? "\n" : "");
  }
  if (lines.back().empty()) lines.pop_back();
  const InputFile file(writeFile("lines.txt", text));
  const std::uint64_t bytes = text.size() - start;
  for (std::size_t parts : {1U, 2U, 3U, 7U, 64U, 1000U}) {
    std::vector<std::string> found;
    for (std::size_t part = 0; part < parts; ++part)
      forEachLine(file, start, start + partBegin(bytes, parts, part), start + partBegin(bytes, parts, part + 1),
                  [&](const char *begin, const char *end) {
                    found.emplace_back(begin, end);
                    return true;
                  });
    EXPECT_EQ(found, lines) << parts << " parts";
    std::size_t counted = 0;
    for (std::size_t part = 0; part < parts; ++part)
      counted += countDataLines(file, start, start + partBegin(bytes, parts, part),
                                start + partBegin(bytes, parts, part + 1), 'c');
    EXPECT_EQ(counted, static_cast<std::size_t>(std::count_if(lines.begin(), lines.end(), [](const std::string &line) {
                return !line.empty() && line.front() != 'c';
              })));
  }
}

TEST(LargeFiles, ALineLongerThanAnyBlock) {
  const std::string line(900'000, 'q');
  const InputFile file(writeFile("long.txt", "a\n" + line + "\nb"));
  std::vector<std::size_t> lengths;
  forEachLine(file, 0, 0, file.size(), [&](const char *begin, const char *end) {
    lengths.push_back(static_cast<std::size_t>(end - begin));
    return true;
  });
  EXPECT_EQ(lengths, (std::vector<std::size_t>{1, line.size(), 1}));
}

TEST(LargeFiles, BinaryKindsAgreePointByPoint) {
  std::string rows;
  std::string xs;
  std::string rings;
  std::string bin = bytesOf(static_cast<std::uint32_t>(pointCount));
  std::string ply;
  for (int i = 0; i < pointCount; ++i) {
    const float x = static_cast<float>(i) * 0.5F;
    const auto ring = static_cast<std::uint16_t>(i);
    rows += bytesOf(x) + bytesOf(ring);
    xs += bytesOf(x);
    rings += bytesOf(ring);
    bin += binRecord(x, 0, 0, ring, 0, ring);
    ply += bytesOf(x) + bytesOf(0.0F) + bytesOf(0.0F) + bytesOf(static_cast<float>(ring)) + bytesOf(0.0F);
  }
  const std::string count = std::to_string(pointCount);
  const std::string packed = compressedSection(lzfLiterals(xs + rings), static_cast<std::uint32_t>(rows.size()));
  PcdFileReader binary;
  PcdFileReader compressed;
  ASSERT_TRUE(binary.read(writeFile("l.pcd", pcdText("x ring", "4 2", "F U", count, "binary", rows + rows))));
  ASSERT_TRUE(compressed.read(writeFile("m.pcd", pcdText("x ring", "4 2", "F U", count, "binary_compressed", packed))));
  BinFrame frame;
  ASSERT_EQ(readBin(writeFile("l.bin", bin), frame), BinResult::read);
  const PlyPoints vertices = readPly(
      writeFile("l.ply", "ply\nformat binary_little_endian 1.0\nelement vertex " + count +
                             "\nproperty float x\nproperty float y\nproperty float z\nproperty float intensity\n"
                             "property float confidence\nend_header\n" +
                             ply));
  const auto expected = static_cast<std::size_t>(pointCount);
  ASSERT_EQ(binary.points().size(), expected);
  ASSERT_EQ(compressed.points().size(), expected);
  ASSERT_EQ(frame.count, expected);
  ASSERT_EQ(vertices.size(), expected);
  for (std::size_t i = 0; i < expected; ++i) {
    const float x = static_cast<float>(i) * 0.5F;
    const auto ring = static_cast<std::uint16_t>(i);
    ASSERT_TRUE(binary.points()[i].x == x && binary.points()[i].ring == ring) << i;
    ASSERT_TRUE(compressed.points()[i].x == x && compressed.points()[i].ring == ring) << i;
    ASSERT_TRUE(frame.point(static_cast<std::uint32_t>(i)).x == x &&
                frame.point(static_cast<std::uint32_t>(i)).ring == ring)
        << i;
    ASSERT_TRUE(vertices[i].x == x && vertices[i].intensity == static_cast<float>(ring)) << i;
  }
}

TEST(LargeFiles, AFaultInALaterPartIsThrownOnTheCallersThread) {
  std::string header =
      "ply\nformat ascii 1.0\nelement vertex 60000\nproperty float x\nproperty float y\nproperty float z\n"
      "property float intensity\nproperty float confidence\nend_header\n";
  std::mt19937 random(2);
  std::string text = textLines(random, false);
  text.insert(text.rfind('\n', text.size() - 200) + 1, "not a vertex at all\n");
  EXPECT_THROW(static_cast<void>(readPly(writeFile("broken.ply", header + text))), std::runtime_error);
}

}  // namespace
}  // namespace tarvo::skarnvisor
