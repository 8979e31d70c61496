#include "tests/default_pipeline/parser_fixture.h"

#include "contracts/runtime/point_fields.h"

#include <QFileInfo>
#include <QSignalSpy>

namespace tarvo::skarnvisor::test {
namespace {

TEST_F(ParserTest, AFrameBecomesVerticesAndOneSignal) {
  give({point(1.0F, -2.0F, 0.0004F), point(2000.0F, 0.0F, 0.0F), point(0.0F, 0.0F, 0.0F, 0)});
  parse();
  EXPECT_EQ(log.take(), Names{"someSignalReceived"});
  const auto drawn = vertices();
  ASSERT_EQ(drawn.size(), 3U);
  EXPECT_EQ(unpackPosition(drawn[0]), (MillimetrePosition{1000, -2000, 0}));
  EXPECT_EQ(unpackPosition(drawn[1]).x, 1'048'575);
  EXPECT_EQ(drawn[2].color, hiddenMark);
  EXPECT_EQ(drawn[0].color & 0xffffU, 0x3400U) << "intensity 64 of 256 is a quarter";
  EXPECT_EQ(rb.primitiveCount(), 3);
}

TEST_F(ParserTest, ARunWithoutNewsParsesNothingUntilARepeatParseAsks) {
  give({point(1.0F, 0.0F, 0.0F)});
  rb.flow().skipParse = true;
  parse();
  EXPECT_TRUE(log.take().empty());
  EXPECT_FALSE(rb.flow().skipParse);

  rb.flow().skipParse = true;
  rb.repeatParse();
  EXPECT_EQ(log.take(), Names{"someSignalReceived"});
  EXPECT_FALSE(rb.flow().forceReparse);
}

TEST_F(ParserTest, ARepeatParseDuringADecodeIsLeftToTheRunBehindIt) {
  give({point(1.0F, 0.0F, 0.0F)});
  rb.beginDecode();
  rb.repeatParse();
  EXPECT_TRUE(log.take().empty());
  rb.endDecode();
  rb.flow().skipParse = true;  // the decode brought nothing
  parse();
  EXPECT_EQ(log.take(), Names{"someSignalReceived"});
}

TEST_F(ParserTest, AFrameWithNothingToShowKeepsAnEarlierPicture) {
  give({point(0.0F, 0.0F, 0.0F, 0), point(0.0F, 0.0F, 0.0F, 0)});
  parse();
  EXPECT_EQ(rb.primitiveCount(), 2) << "the first frame counts even when nothing shows";
  give({point(1.0F, 2.0F, 3.0F)});
  parse();
  const QByteArray picture = rb.vertex();
  log.take();

  runtime->frame.packetCapacity = 4;  // another capacity must not touch the picture either
  runtime->frame.pointsPerPacket = 8;
  give({point(0.0F, 0.0F, 0.0F, 0), point(0.0F, 0.0F, 0.0F, 0), point(0.0F, 0.0F, 0.0F, 0)});
  parse();
  EXPECT_TRUE(log.take().empty());
  EXPECT_EQ(rb.vertex(), picture);
  EXPECT_EQ(rb.primitiveCount(), 1);

  for (auto &hidden : source.points) hidden.channel = 1;  // as if a filter that hid them were relaxed
  rb.filterSinglePoints();
  EXPECT_EQ(rb.primitiveCount(), 3) << "the frame under the cursor shows, not the stored points of the one before";
}

TEST_F(ParserTest, PointsThatTheSourceCountsButDoesNotHoldAreNotDrawn) {
  runtime->frame.packetCapacity = 1;
  runtime->frame.pointsPerPacket = 8;
  give({point(1.0F, 0.0F, 0.0F), point(2.0F, 0.0F, 0.0F), point(3.0F, 0.0F, 0.0F)});
  parse();
  parse();  // both vertex arrays have held three points
  give({point(1.0F, 0.0F, 0.0F)});
  source.pointCount = 3;
  parse();
  const auto drawn = vertices();
  ASSERT_EQ(drawn.size(), 3U);
  EXPECT_NE(drawn[0].color, hiddenMark);
  EXPECT_EQ(drawn[1].color, hiddenMark);
  EXPECT_EQ(drawn[2].color, hiddenMark);
}

TEST_F(ParserTest, SideModelsFollowTheFrame) {
  runtime->frame.laserCount = 3;
  runtime->frame.channelCount = 0;
  runtime->frame.returnMode = 57;
  runtime->frame.motorSpeed = 600.5;
  source.sourceTitle = "street.pcap";
  source.laserPointCount = 2;
  QSignalSpy titles(&rb.echoModel(), &EchoModel::echoTitlesChanged);
  give({point(1.0F, 2.0F, 3.0F), point(0.0F, 0.0F, 0.0F, 0), point(1.0F, 0.0F, 0.0F)});
  parse();
  parse();
  EXPECT_EQ(titles.count(), 1);
  EXPECT_EQ(log.take(), (Names{"channelModelChanged", "someSignalReceived", "someSignalReceived"}));
  EXPECT_EQ(rb.channelModel().rowCount(), 3);
  EXPECT_EQ(rb.status().toStdString(), "Motor Speed:   600.500\t\tReturn Mode: last & strongest\t\tstreet.pcap\t\n");
  const QByteArray lasers = rb.laserPoints();
  ASSERT_EQ(lasers.size(), 2 * 16);
  LaserPoint rows[2];
  std::memcpy(rows, lasers.constData(), sizeof rows);
  EXPECT_FLOAT_EQ(rows[0].z, 3.0F);
  EXPECT_FLOAT_EQ(rows[0].value, 0.25F);
  EXPECT_FLOAT_EQ(rows[1].value, -1.0F);

  rb.setScales({.rgbType = true, .rgbMax = 256.0F});
  parse();
  EXPECT_EQ(rb.laserCount(), 0);
  EXPECT_TRUE(rb.laserPoints().isEmpty());
}

TEST_F(ParserTest, CorrectionsAreAskedForOnceAndFetchedOnce) {
  const LogLines lines;
  give({point(1.0F, 0.0F, 0.0F)});
  parse();
  parse();
  const auto messages = lines.messages();
  EXPECT_EQ(std::count(messages.begin(), messages.end(),
                       "Please load the correction file, otherwise the image will be abnormal."),
            1);
  const auto cell = [this](int row, int column) {
    return rb.channelModel().data(rb.channelModel().index(row, column)).toFloat();
  };
  EXPECT_FLOAT_EQ(cell(2, 2), -1.0F);
  runtime->corrected = true;
  parse();
  EXPECT_FLOAT_EQ(cell(2, 2), -3.0F);
  EXPECT_FLOAT_EQ(cell(2, 3), 3.0F);
  EXPECT_FLOAT_EQ(cell(100, 3), -1.0F) << "beyond the runtime's table";
  log.take();
  rb.setDisplayedFlag(3, false);
  EXPECT_EQ(log.take(), (Names{"channelModelChanged", "renderStateChanged"}));
  rb.setDisplayedFlag(1, false, false);
  EXPECT_TRUE(log.take().empty());
  rb.setDisplayedFlag(4, false);  // behind the table: nothing to store, but the last of many ends with the signals
  EXPECT_EQ(log.take(), (Names{"channelModelChanged", "renderStateChanged"}));
  EXPECT_EQ(runtime->shown, (std::array{true, false, true, false}));
}

TEST_F(ParserTest, ImuSamplesReachThePanelOnlyWhileItIsOn) {
  tarvo::lidar::ImuSample sample;
  sample.acceleration = {3.0, 0.0, 4.0};
  const auto feed = [&](bool valid) {
    sample.valid = valid;
    source.imuSamples = {sample};
    give({point(1.0F, 0.0F, 0.0F)});
    parse();
    EXPECT_TRUE(source.imuSamples.empty());
  };
  feed(false);
  EXPECT_EQ(rb.imuConfig(), -1);
  log.take();
  feed(true);
  EXPECT_EQ(rb.imuConfig(), 0);
  EXPECT_EQ(log.take(), (Names{"imuConfigChanged", "someSignalReceived"}));
  EXPECT_EQ(rb.imuData(), (QList<double>{0.0, 0.0, 1.0}));
  rb.setImuConfig(1);
  log.take();
  feed(true);
  EXPECT_EQ(log.take(), (Names{"imuDataChanged", "someSignalReceived"}));
  EXPECT_EQ(rb.imuData(), (QList<double>{0.6, 0.0, 0.8}));
}

TEST_F(ParserTest, FaultPacketsAreFoldedWhileThePanelIsOpenAndDroppedOtherwise) {
  std::vector<unsigned char> packets{1, 0x48, 0x20, 0x02, 0x01, 1, 1, 0x48, 0x20, 0x10, 0x00, 1, 9, 0, 0, 0, 0, 0};
  const auto feed = [&] {
    source.statusPackets = packets.data();
    source.statusPacketCount = 3;
    give({point(1.0F, 0.0F, 0.0F)});
    parse();
    EXPECT_EQ(source.statusPacketCount, 0);
  };
  feed();
  EXPECT_EQ(log.take(), Names{"someSignalReceived"});
  rb.setFaultmessageViewEnabled(true);
  EXPECT_TRUE(runtime->params.snapshot().faultPackets);
  log.take();
  feed();
  EXPECT_EQ(log.take(), (Names{"faultmessageModelChanged", "someSignalReceived"}));
  const auto *table = rb.readFaultmessageModel();
  std::vector<std::string> rows;
  for (int row = 0; row < table->rowCount(); ++row)
    rows.push_back(table->index(row, 0).data().toString().toStdString() + "=" +
                   table->index(row, 1).data().toString().toStdString());
  EXPECT_EQ(rows, (std::vector<std::string>{"Fault Message Version=1", "Lidar State=2", "Fault Code Type=1",
                                            "Total Fault Code Num=2", "Fault Code 1=0x0010", "Fault Code 2=0x0102"}));
}

TEST_F(ParserTest, RemakeLaysPointsOnAGridAndHidesMissingReturns) {
  auto missing = point(5.0F, 5.0F, 5.0F);
  missing.distance = 0.0F;
  give({point(5.0F, 5.0F, 5.0F), missing, point(5.0F, 5.0F, 5.0F), point(5.0F, 5.0F, 5.0F)});
  rb.setRemakeConfig(true);
  EXPECT_EQ(log.take(), (Names{"someSignalReceived", "remakeConfigChanged", "vertexChanged", "renderStateChanged"}));
  EXPECT_TRUE(runtime->params.snapshot().remake.enabled);
  EXPECT_EQ(source.remakeWidth, 3);
  EXPECT_EQ(source.mergedFrames, 1) << "at least one";
  const auto grid = vertices();
  EXPECT_EQ(unpackPosition(grid[0]), (MillimetrePosition{0, 0, -1000}));
  EXPECT_EQ(grid[1].color, hiddenMark);
  EXPECT_EQ(unpackPosition(grid[3]), (MillimetrePosition{0, 1000, -1000}));

  source.rgbMode = 1;  // camera frames keep their coordinates
  parse();
  EXPECT_EQ(unpackPosition(vertices()[0]), (MillimetrePosition{5000, 5000, 5000}));
}

TEST_F(ParserTest, FiltersHideOrHighlight) {
  give({point(1.0F, 0.0F, 0.0F), point(900.0F, 0.0F, 0.0F)});
  QVariantList floats;
  for (const double limit : {-360.0, 360.0, -360.0, 360.0, 0.0, 1000.0, 0.0, 10.0, -1000.0, 1000.0, -1000.0, 1000.0})
    floats.append(limit);
  QVariantList ints;
  for (const int limit : FilterSnapshot::intLimitsAtStart()) ints.append(limit);
  rb.filterModel().setFilter(true, floats, ints);
  parse();
  EXPECT_EQ(vertices()[1].color, hiddenMark);
  rb.filterModel().setHighlight(true);
  parse();
  EXPECT_EQ(vertices()[1].color, highlightMark);
  rb.filterModel().reset();
  log.take();
  rb.filterSinglePoints();  // the stored points are enough
  EXPECT_EQ(log.take(), Names{"vertexChanged"});
  EXPECT_EQ(vertices()[1].color, vertices()[0].color);
}

TEST_F(ParserTest, EchoAndDirtyLevelGatesHoldForTheirTypes) {
  auto strong = point(1.0F, 0.0F, 0.0F);
  strong.confidence = 2;
  auto dirty = point(1.0F, 0.0F, 0.0F);
  tarvo::lidar::fields::dirtyDegree.set(dirty, 3);
  give({point(1.0F, 0.0F, 0.0F), strong, dirty});
  runtime->frame.selectedEcho = 2;
  rb.toggleDirtry(3, false);
  rb.toggleDirtry(256, false);
  const auto hidden = [this] {
    parse();
    std::vector<bool> marks;
    for (const Vertex &vertex : vertices()) marks.push_back(vertex.color == hiddenMark);
    return marks;
  };
  EXPECT_EQ(hidden(), (std::vector{false, false, false})) << "another type";
  rb.setLidarType("HU_V8");
  EXPECT_EQ(hidden(), (std::vector{true, false, true}));
  rb.setLidarType("VD2");
  EXPECT_EQ(hidden(), (std::vector{false, false, true}));
}

TEST_F(ParserTest, CanvasesFillInTurnAndOverflowIsCutOrDropped) {
  auto &ring = rb.ring();
  ring.canvasCount = 2;
  ring.canvasBufferSize = ring.canvasPointCapacity = 2;
  ring.canvasTargets.fill(0);
  ring.canvasTargets[0] = ring.canvasTargets[1] = 1;
  rb.picture().takeStackLocked(*FramePicture::makeStack(2, 2));
  give({point(1.0F, 0.0F, 0.0F), point(2.0F, 0.0F, 0.0F), point(3.0F, 0.0F, 0.0F)});
  const LogLines lines;
  parse();
  EXPECT_EQ(rb.getIndexUseNow(), 1) << "the first group of a fresh stack lands on canvas 1";
  EXPECT_EQ(rb.primitiveCountGet(1), 2);
  EXPECT_EQ(rb.primitiveCountGet(0), 0);
  EXPECT_EQ(lines.messages().back(),
            "Multi-canvas buffer overflow prevented: offset=0, point_num=3, "
            "buffer_size=2. Truncating to 2 points.");
  parse();
  EXPECT_EQ(rb.getIndexUseNow(), 0);
  EXPECT_EQ(rb.stackFrameNum(), 2);
  EXPECT_EQ(rb.vertexGet(0).size(), 2 * 12);
  EXPECT_TRUE(rb.vertexGet(30).isEmpty());

  ring.canvasBufferSize = 0;
  log.take();
  parse();
  EXPECT_EQ(log.take(), Names{"someSignalReceived"});
  EXPECT_EQ(lines.messages().back(), "Multi-canvas buffer full: offset=0, point_num=3, buffer_size=0. Skipping frame.");
}

TEST_F(ParserTest, CalibrationFromACaptureIsWrittenUntilItSucceeds) {
  const QString path = QStringLiteral("calibration/default_VD8.csv");
  give({point(1.0F, 0.0F, 0.0F)});
  source.correctionExportPending = true;
  parse();
  EXPECT_TRUE(source.correctionExportPending) << "a type without a default file";
  rb.calibrationPaths().correctionPath.set(QFileInfo(path).absoluteFilePath());
  runtime->exportResult = -1;
  parse();
  EXPECT_TRUE(source.correctionExportPending);
  runtime->exportResult = 0;
  QSignalSpy dirs(&rb, &DefaultSDKFrameRenderBuffer::fileDirChanged);
  parse();
  EXPECT_FALSE(source.correctionExportPending);
  ASSERT_TRUE(dirs.wait(5000));
  EXPECT_EQ(rb.correctionFileDir(), QStringLiteral("default_VD8.csv"));
  EXPECT_EQ(runtime->exported.size(), 2U);
}

class FastPathTest : public ParserTest {
 protected:
  FastPathTest() {
    rb.setLidarType("NBQ_COLOR_V3");
    rb.setScales({.rgbType = true, .rgbMax = 4096.0F});
    source.rgbMode = 1;
  }
  std::string reasonOf(int mode = 1) {
    const auto p = point(1.0F, 0.0F, 0.0F);
    return rb.tryFillVertices(&p, 1, mode) ? "" : source.fastPathReason;
  }
};

TEST_F(FastPathTest, EachObstacleHasItsWord) {
  EXPECT_EQ(reasonOf(0), "mode");
  rb.picture().areaFlags = 5;
  rb.picture().areaMask.set({1, 2, 3});
  EXPECT_EQ(reasonOf(), "area_filter:f=5,vec=3");
  rb.setAreaMin(1.0F);
  EXPECT_EQ(reasonOf(), "area_remap");
  rb.settings().vd8PopoutHighlight = true;
  EXPECT_EQ(reasonOf(), "highlight_popout");
  rb.filterModel().setFilter(true, {}, {});
  EXPECT_EQ(reasonOf(), "filter");
  rb.settings().remakeEnabled = true;
  EXPECT_EQ(reasonOf(), "remake");
  rb.settings().selectEnabled = true;
  EXPECT_EQ(reasonOf(), "select");
  rb.settings().spreadSheetEnabled = true;
  EXPECT_EQ(reasonOf(), "spreadsheet");
  rb.ring().canvasCount = 1;
  EXPECT_EQ(reasonOf(), "multi_canvas");
  rb.setLidarType("NBW_TOP_COLOR");
  EXPECT_EQ(reasonOf(), "lidar_type");
}

TEST_F(FastPathTest, FilledVerticesAreThePictureOfTheFrame) {
  std::vector<SDKPointInfo> points{point(1.0F, 0.0F, 0.0F), point(2.0F, 0.0F, 0.0F, 0)};
  points[0].red = 4096;
  runtime->frame.packetCapacity = 1;
  runtime->frame.pointsPerPacket = 16;
  give(points);
  EXPECT_TRUE(rb.tryFillVertices(points.data(), 2, 1));
  source.fastPathDone = true;
  parse();
  EXPECT_EQ(log.take(), (Names{"qmlControlChanged", "someSignalReceived"})) << "a camera frame has no blind channels";
  EXPECT_FALSE(rb.useBlindChannels());
  EXPECT_FALSE(source.fastPathDone);
  ASSERT_EQ(vertices().size(), 2U);
  EXPECT_EQ(vertices()[0].color, 0x00ff0000U);
  EXPECT_EQ(vertices()[1].color, hiddenMark);

  const auto hidden = point(0.0F, 0.0F, 0.0F, 0);
  EXPECT_FALSE(rb.tryFillVertices(&hidden, 1, 1));
  EXPECT_EQ(source.fastPathReason, "try_parse_failed");
  EXPECT_EQ(vertices().size(), 2U);

  rb.setRgbMax(8192.0F);
  EXPECT_EQ(vertices()[0].color, 0x00ff0000U) << "without the ready bytes the same vertices remain";
  rb.setRgbMax(4096.0F);
  parse();  // without the decoder's vertices the full pass takes over
  EXPECT_EQ(vertices()[0].color, 0x00ff0000U);
  EXPECT_FALSE(rb.picture().fastVertexValid);
}

// The selection comes while the capture is paused: no other frame will bring the points.
TEST_F(FastPathTest, ASelectionOrTheTableGetsThePointsOfAPausedFrame) {
  const std::vector<SDKPointInfo> points{point(0.0F, 0.0F, 0.0F), point(5.0F, 0.0F, 0.0F)};
  QMatrix4x4 aroundTheFirst;
  const auto showFast = [&] {
    give(points);
    ASSERT_TRUE(rb.tryFillVertices(points.data(), 2, 1));
    source.fastPathDone = true;
    parse();
    ASSERT_FALSE(rb.picture().storeMatchesVertices);
  };
  showFast();
  rb.setSelectionMatrix(aroundTheFirst);
  rb.setSelectEnabled(true);
  ASSERT_EQ(vertices().size(), 2U);
  EXPECT_EQ(vertices()[0].color, highlightMark);
  EXPECT_NE(vertices()[1].color, highlightMark);
  EXPECT_EQ(rb.spreadSheetModel().rowCount(), 1);

  rb.setSelectEnabled(false);
  showFast();
  rb.spreadSheetModel().setAllDisplayed(true);
  rb.setSpreadSheetEnabled(true);
  EXPECT_EQ(rb.spreadSheetModel().rowCount(), 2);
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
