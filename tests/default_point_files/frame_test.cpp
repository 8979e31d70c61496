// From a file to the frame that is drawn.
#include <gmock/gmock.h>

#include <cmath>
#include <limits>

#include "tests/default_point_files/pipeline_fixture.h"

namespace tarvo::skarnvisor {
namespace {

using namespace test;

const std::string plyHeader =
    "ply\nformat ascii 1.0\nelement vertex 2\nproperty float x\nproperty float y\nproperty float z\n"
    "property float intensity\nproperty float confidence\nend_header\n";

TEST(Frame, NothingBeforeTheFirstFile) {
  PointPipeline pipeline;
  EXPECT_EQ(pipeline.buffer.primitiveCount(), 4'096'000);
  const auto vertices = pipeline.vertices();
  ASSERT_EQ(vertices.size(), 4'096'000U);
  EXPECT_TRUE(std::all_of(vertices.begin(), vertices.end(), [](const Vertex &v) { return v.color == hiddenMark; }));
  QSignalSpy changed(&pipeline.buffer, &DefaultPcdFrameRenderBuffer::vertexChanged);
  pipeline.parser();
  EXPECT_EQ(changed.count(), 0) << "no current file, no step";
}

TEST(Frame, ThePointsOfEachFormat) {
  PointPipeline pipeline;
  QSignalSpy changed(&pipeline.buffer, &DefaultPcdFrameRenderBuffer::vertexChanged);
  pipeline.showFile(
      binFile("1.bin", {binRecord(0, 1, 0, 7, 8, 3), binRecord(1, 0, 0, 7, 8, 3), binRecord(3, 4, 12, 0, 0, 3)}));
  EXPECT_EQ(changed.count(), 1);
  ASSERT_EQ(pipeline.buffer.primitiveCount(), 3);
  const lidar::SDKPointInfo north = pipeline.point(0);
  EXPECT_EQ(north.azimuthCalib, 0.0F);
  EXPECT_EQ(north.elevationCalib, 0.0F);
  EXPECT_EQ(north.distance, 1.0F);
  EXPECT_EQ(north.channel, 3);
  EXPECT_EQ(north.intensity, 7);
  EXPECT_EQ(north.confidence, 8);
  EXPECT_EQ(north.azimuth, 0.0F);
  EXPECT_EQ(north.timeNs, 0U);
  EXPECT_FLOAT_EQ(pipeline.point(1).azimuthCalib, 90.0F);
  EXPECT_FLOAT_EQ(pipeline.point(2).distance, 13.0F);
  EXPECT_FLOAT_EQ(pipeline.point(2).elevationCalib, 67.380135F);
  EXPECT_EQ(unpackPosition(pipeline.vertices()[2]), (MillimetrePosition{3000, 4000, 12000}));
  EXPECT_FLOAT_EQ(pipeline.mainColor(0), 7.0F / 256.0F) << "colour mode 3 is the intensity";

  pipeline.showFile(writeFile("2.ply", plyHeader + "1 2 3 4.9 -1.5\n5 6 7 70000 9\n"));
  ASSERT_EQ(pipeline.buffer.primitiveCount(), 2);
  EXPECT_EQ(pipeline.point(0).intensity, 4);
  EXPECT_EQ(pipeline.point(0).confidence, 65535);
  EXPECT_EQ(pipeline.point(1).intensity, 70000 - 65536);
  EXPECT_EQ(pipeline.point(1).channel, 2) << "without rings the points count through them";
}

TEST(Frame, RingsOfPcdFiles) {
  struct Case {
    const char *fields;
    const char *data;
    std::vector<int> rings;
  };
  const Case cases[] = {{"x ring", "1 2\n1 0\n1 5\n", {2, 1, 6}}, {"x ring rowId", "1 2 9\n1 3 9\n", {2, 3}},
                        {"x rowId", "1 0\n1 63\n", {1, 64}},      {"x rowId", "1 4\n1 65535\n1 0\n", {5, 1, 2}},
                        {"x ring", "1 0\n1 65535\n", {1, 0}},     {"x y", "1 2\n1 0\n", {1, 2}}};
  PointPipeline pipeline;
  for (const Case &c : cases) {
    testing::internal::CaptureStdout();
    pipeline.showFile(writeFile("r.pcd", pcdText(c.fields, "4 2 2", "F U U", "1", "ascii", c.data)));
    testing::internal::GetCapturedStdout();
    ASSERT_EQ(pipeline.buffer.primitiveCount(), static_cast<int>(c.rings.size()));
    for (std::size_t i = 0; i < c.rings.size(); ++i)
      EXPECT_EQ(pipeline.point(i).channel, c.rings[i]) << c.fields << c.data;
  }
}

TEST(Frame, WhatHidesAPoint) {
  PointPipeline pipeline;
  const std::string path =
      binFile("h.bin", {binRecord(1, 1, 1, 10, 0, 64), binRecord(1, 1, 1, 20, 0, 65), binRecord(1, 1, 1, 30, 0, 1024),
                        binRecord(1, 1, 1, 40, 0, 1025), binRecord(1, 1, 1, 50, 0, 0), binRecord(NAN, 1, 1, 60, 0, 5),
                        binRecord(1, INFINITY, 1, 70, 0, 5), binRecord(2000, -2000, 0, 80, 0, 5)});
  const auto hidden = [&] {
    pipeline.showFile(path);
    std::string marks;
    for (std::size_t i = 0; i < 8; ++i) marks += pipeline.isHidden(i) ? 'h' : '.';
    return marks;
  };
  EXPECT_EQ(hidden(), "...h.hh.");
  EXPECT_EQ(unpackPosition(pipeline.vertices()[7]), (MillimetrePosition{1048575, -1048576, 0}));
  EXPECT_EQ(pipeline.point(7).x, 2000.0F);
  EXPECT_TRUE(std::isnan(pipeline.point(5).x)) << "hidden points are stored too";

  pipeline.buffer.setDisplayedFlag(63, false);
  EXPECT_EQ(hidden(), "h..h.hh.");
  EXPECT_EQ(unpackPosition(pipeline.vertices()[0]), (MillimetrePosition{1000, 1000, 1000})) << "the place stays";
  pipeline.buffer.setDisplayedFlag(-1, false);
  pipeline.buffer.setDisplayedFlag(1024, false);
  EXPECT_EQ(hidden(), "h..h.hh.");
  pipeline.buffer.setDisplayedFlag(63, true);

  pipeline.buffer.setUsePixelChannelLayout(false);
  pipeline.buffer.setDisableSubpixelChannel(true);
  EXPECT_EQ(hidden(), ".hhh.hh.");
  pipeline.buffer.setDisableSubpixelChannel(false);
  EXPECT_EQ(hidden(), "...h.hh.");

  QVariantList floats;
  for (int i = 0; i < 12; ++i) floats.append(i % 2 == 0 ? -1e9 : 1e9);
  QVariantList ints;
  for (int i = 0; i < 36; ++i) ints.append(i % 2 == 0 ? 0 : 1'000'000);
  ints[1] = 45;  // intensity up to 45
  pipeline.buffer.readFilterModel()->setFilter(true, floats, ints);
  EXPECT_EQ(hidden(), "...hhhhh");
  pipeline.buffer.readFilterModel()->setHighlightValue(1);
  EXPECT_EQ(hidden(), "...h.hh.") << "a highlighting filter hides nothing";
  EXPECT_EQ(pipeline.vertices()[4].color, highlightMark);
  EXPECT_EQ(unpackPosition(pipeline.vertices()[4]), (MillimetrePosition{1000, 1000, 1000}));
  EXPECT_NE(pipeline.vertices()[0].color, highlightMark);
}

TEST(Frame, SubpixelsByTheRingsThatTheFrameHas) {
  PointPipeline pipeline;
  const std::string path =
      binFile("s.bin", {binRecord(1, 1, 1, 1, 0, 1), binRecord(1, 1, 2, 1, 0, 5), binRecord(1, 1, 3, 1, 0, 9),
                        binRecord(0, 0, 0, 1, 0, 3), binRecord(1, 1, 1, 1, 0, 700)});
  pipeline.showFile(path);
  pipeline.buffer.setDisableSubpixelChannel(true);  // takes the layout from the frame
  const ChannelLayout layout = pipeline.buffer.channelLayout();
  EXPECT_EQ(layout.pixelOrder, (std::vector<int>{8, 4, 0})) << "highest elevation first";
  EXPECT_EQ(layout.pixelFollowers[0], (std::vector<int>{1, 2, 3}));
  EXPECT_EQ(layout.pixelFlags[2], 0);
  EXPECT_EQ(layout.pixelFlags[9], 1);
  pipeline.showFile(path);
  EXPECT_FALSE(pipeline.isHidden(0));
  EXPECT_TRUE(pipeline.isHidden(3)) << "ring 3 lies between pixels";
  EXPECT_FALSE(pipeline.isHidden(4)) << "beyond the flags nothing is a subpixel";

  pipeline.buffer.setChannelMapping(false);
  EXPECT_EQ(pipeline.buffer.channelLayout().pixelOrder, (std::vector<int>{0, 4, 8}));
  pipeline.buffer.setUsePixelChannelLayout(false);
  pipeline.buffer.setChannelMapping(true);
  const auto order = pipeline.buffer.channelLayout().channelOrder;
  EXPECT_EQ((std::vector<int>{order[11], order[12], order[47], order[48], order[63], order[64], order[99], order[100]}),
            (std::vector<int>{11, 13, 83, 84, 99, 12, 82, 100}));
  pipeline.buffer.setDisableSubpixelChannel(true);
  EXPECT_EQ(pipeline.buffer.channelLayout().channelOrder[12], 12);
}

TEST(Frame, AFrameBeyondTheRoomIsCut) {
  PointPipeline pipeline;
  const std::uint32_t count = 4'096'003;
  std::string bytes = bytesOf(count);
  bytes.resize(4 + 16ULL * count, '\0');
  pipeline.showFile(writeFile("huge.bin", bytes));
  EXPECT_EQ(pipeline.buffer.primitiveCount(), 4'096'000);
  EXPECT_FALSE(pipeline.isHidden(4'095'999));
  QFile::remove("huge.bin");
  pipeline.showFile(binFile("small.bin", {binRecord(1, 2, 3, 4, 5, 6)}));
  EXPECT_EQ(pipeline.vertices().size(), 1U);
}

TEST(Frame, WhatCannotBeReadLeavesTheFormerFrame) {
  PointPipeline pipeline;
  pipeline.showFile(binFile("good.bin", {binRecord(1, 2, 3, 4, 5, 6)}));
  QSignalSpy changed(&pipeline.buffer, &DefaultPcdFrameRenderBuffer::vertexChanged);
  const auto stays = [&] { return pipeline.buffer.primitiveCount() == 1 && !pipeline.isHidden(0); };

  testing::internal::CaptureStderr();
  EXPECT_NE(pipeline.showFile(writeFile("bad.bin", bytesOf(std::uint32_t{2}) + std::string(34, 'a'))), "");
  EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::HasSubstr("Error: File size mismatch."));
  EXPECT_EQ(changed.count(), 0) << "the run ends at once";
  EXPECT_TRUE(stays());

  testing::internal::CaptureStdout();
  EXPECT_NE(pipeline.showFile(writeFile("bad.pcd", pcdText("x", "4", "F", "1", "binary_compressed", "x"))), "");
  testing::internal::GetCapturedStdout();
  EXPECT_EQ(changed.count(), 1);
  EXPECT_TRUE(stays());

  const std::string capitals = binFile("UPPER.BIN", {binRecord(1, 2, 3, 4, 5, 6), binRecord(1, 2, 3, 4, 5, 6)});
  EXPECT_THAT(pipeline.showFile(capitals), testing::HasSubstr("lower case")) << "admitted to the list, not read";
  EXPECT_TRUE(stays());
  EXPECT_EQ(pipeline.showFile("vanished.bin"), "the file cannot be opened");
  EXPECT_EQ(pipeline.showFile("vanished.pcd"), "无法打开文件: vanished.pcd");
  EXPECT_EQ(pipeline.showFile(writeFile("x.ply", "ply\nformat ascii 1.0\nend_header\n")),
            "PLY parser: no element with name: vertex");
  EXPECT_TRUE(stays());
  pipeline.showFile(binFile("next.bin", {binRecord(1, 2, 3, 4, 5, 6), binRecord(1, 2, 3, 4, 5, 6)}));
  EXPECT_EQ(pipeline.buffer.primitiveCount(), 2) << "the next file plays";
}

TEST(Frame, LargeFramesArePlacedAlikeOnAllCores) {
  PointPipeline pipeline;
  std::vector<std::string> records;
  for (int i = 0; i < 50'001; ++i)
    records.push_back(binRecord(static_cast<float>(i % 1000), 1, 2, static_cast<std::uint16_t>(i % 200), 0,
                                static_cast<std::uint16_t>(i % 1100)));
  pipeline.showFile(binFile("large.bin", records));
  const auto vertices = pipeline.vertices();
  ASSERT_EQ(vertices.size(), records.size());
  for (int i = 0; i < 50'001; ++i) {
    const Vertex &vertex = vertices[static_cast<std::size_t>(i)];
    ASSERT_EQ(vertex.color == hiddenMark, i % 1100 > 1024) << i;
    if (vertex.color != hiddenMark) {
      ASSERT_EQ(unpackPosition(vertex).x, i % 1000 * 1000) << i;
      ASSERT_EQ(floatFromHalf(static_cast<std::uint16_t>(vertex.color)), static_cast<float>(i % 200) / 256.0F) << i;
    }
  }
}

TEST(Producer, TheFileAtTheCursorByFrameAndByTime) {
  const QString folder = freshFolder("cursor");
  writeInto(folder, "1.0.bin", bytesOf(std::uint32_t{1}) + binRecord(1, 1, 1, 1, 1, 1));
  writeInto(folder, "2.0.bin", bytesOf(std::uint32_t{2}) + binRecord(1, 1, 1, 1, 1, 1) + binRecord(1, 1, 1, 1, 1, 1));
  PointPipeline pipeline(folder);
  for (const bool byFrame : {true, false}) {
    pipeline.buffer.setPlayByFrame(byFrame);
    pipeline.showAt(1.5);
    EXPECT_EQ(pipeline.buffer.primitiveCount(), 1);
    pipeline.showAt(2.1);
    EXPECT_EQ(pipeline.buffer.primitiveCount(), 2);
    EXPECT_EQ(pipeline.clip.frameID(), 1);
    pipeline.showAt(9.0);
    EXPECT_EQ(pipeline.buffer.currentFile(), QString());
    EXPECT_EQ(pipeline.buffer.primitiveCount(), 2) << "outside the clip the picture stays";
  }
  QFile::remove(folder + "/1.0.bin");
  EXPECT_NE(pipeline.showAt(1.5), "");
  EXPECT_EQ(pipeline.buffer.primitiveCount(), 2) << "a file that vanished leaves the picture";
}

}  // namespace
}  // namespace tarvo::skarnvisor
