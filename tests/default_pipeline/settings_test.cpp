#include "tests/default_pipeline/parser_fixture.h"

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QSignalSpy>

#include <atomic>
#include <thread>

#include "tests/support/test_environment.h"

namespace tarvo::skarnvisor::test {
namespace {

TEST_F(ParserTest, ColourModesRecolourThePictureThatStands) {
  auto far = point(1.0F, 0.0F, 0.0F);
  far.distance = 150.0F;
  give({far, point(0.0F, 0.0F, 0.0F, 0)});
  parse();
  log.take();
  EXPECT_EQ(vertices()[0].color, 0x38003400U) << "distance in the split window, intensity in the main one";
  rb.setColorMode(7);
  EXPECT_EQ(log.take(), (Names{"colorModeChanged", "vertexChanged", "renderStateChanged"}));
  EXPECT_EQ(vertices()[0].color, 0x38003800U);
  EXPECT_EQ(vertices()[1].color, hiddenMark);
  rb.setColorMode(7);
  rb.addColorMode("no such title");
  rb.selectColorMode("Echo");
  EXPECT_TRUE(log.take().empty());
  rb.addColorMode("Echo");
  EXPECT_EQ(log.take(), Names{"colorModeTitlesChanged"});
  rb.selectColorMode("Echo");
  EXPECT_EQ(rb.colorModeTitles().at(rb.colorMode()), QStringLiteral("Echo"));
  rb.setColorModeSplitWindow(6);
  EXPECT_EQ(log.take(), (Names{"colorModeChanged", "vertexChanged", "renderStateChanged", "colorModeSplitWindowChanged",
                               "vertexChanged", "renderStateChanged"}));
  EXPECT_EQ(vertices()[0].color >> 16, 0x3400U);
  rb.updateMask(0x0f);
  EXPECT_EQ(log.take(), Names{"vertexChanged"});
  EXPECT_EQ(vertices()[0].color >> 16, 0U) << "intensity 64 under the mask is 0";
}

TEST_F(ParserTest, ColourLimitsRefuseIgnoreOrRedraw) {
  rb.setScales({.rgbType = true, .rgbMax = 256.0F});
  auto grey = point(1.0F, 0.0F, 0.0F);
  grey.red = grey.green = grey.blue = 128;
  give({grey});
  parse();
  log.take();
  const LogLines lines;
  rb.setRgbMin(256.0F);
  rb.setRgbMin(std::nanf(""));
  rb.setRgbMax(0.0F);
  rb.setRgbMinLong(32.0F);
  rb.setRgbMaxLong(-1.0F);
  rb.setRgbAutoScaleLowPercent(99.0F);
  rb.setRgbAutoScaleHighPercent(100.5F);
  rb.setAreaMin(65535.0F);
  rb.setAreaMax(0.0F);
  rb.setRgbMin(0.4F);  // too small a change
  EXPECT_TRUE(log.take().empty());
  EXPECT_EQ(lines.messages(), (Names{"setRgbMin failed: min(256.0) must be less than max(256.0)",
                                     "setRgbMin failed: min(nan) must be less than max(256.0)",
                                     "setRgbMax failed: max(0.0) must be greater than min(0.0)",
                                     "setRgbMinLong failed: min(32.0) must be less than max(32.0)",
                                     "setRgbMaxLong failed: max(-1.0) must be greater than min(0.0)",
                                     "setRgbAutoScaleLowPercent failed: low(99.0) must be in [0, high=99.0)",
                                     "setRgbAutoScaleHighPercent failed: high(100.5) must be in (low=1.0, 100]",
                                     "setAreaMin failed: min(65535.0) must be less than max(65535.0)",
                                     "setAreaMax failed: max(0.0) must be greater than min(0.0)"}));
  EXPECT_FLOAT_EQ(rb.rgbMin(), 0.0F);

  rb.setRgbMax(128.0F);
  EXPECT_EQ(log.take(), (Names{"vertexChanged", "renderStateChanged"}));
  EXPECT_EQ(vertices()[0].color, 0x00ffffffU);

  rb.setRgbAutoScale(true);  // one grey point: low is 128, high one above it
  EXPECT_EQ(log.take(), (Names{"vertexChanged", "renderStateChanged"}));
  EXPECT_FLOAT_EQ(rb.rgbMin(), 128.0F);
  EXPECT_FLOAT_EQ(rb.rgbMax(), 129.0F);
  EXPECT_EQ(vertices()[0].color, 0U);
  rb.setRgbMin(127.8F);
  EXPECT_TRUE(rb.rgbAutoScale()) << "a small change does not switch to manual";
  rb.setRgbMin(100.0F);
  EXPECT_FALSE(rb.rgbAutoScale());
  rb.setAreaMax(100.0F);
  EXPECT_TRUE(rb.colors().areaRemap.take()->areaRemapEnabled);
}

TEST_F(ParserTest, CameraOverlayFollowsTheFrame) {
  give({point(1.0F, 0.0F, 0.0F)});
  source.rgbMode = 4;
  source.overlayPoints = {point(1.0F, 0.0F, 0.0F), point(0.0F, 0.0F, 0.0F, 0)};
  source.overlayColumns = 2;
  source.overlayRows = 1;
  parse();
  EXPECT_EQ(log.take(), (Names{"rgbOverlayVertexChanged", "someSignalReceived"}));
  EXPECT_TRUE(rb.rgbOverlayVisible());
  EXPECT_EQ(rb.rgbOverlayVertex().size(), 24);
  EXPECT_EQ(rb.rgbOverlayCols(), 2);
  source.rgbMode = 0;
  parse();
  parse();
  EXPECT_EQ(log.take(), (Names{"rgbOverlayVertexChanged", "someSignalReceived", "someSignalReceived"}));
  EXPECT_TRUE(rb.rgbOverlayVertex().isEmpty());
  EXPECT_EQ(rb.rgbOverlayRows(), 0);
}

TEST_F(ParserTest, DecoderSwitchesReachItsParameters) {
  rb.setUseCuda(1);
  EXPECT_EQ(log.take(), (Names{"renderStateChanged", "useCudaChanged"}));
  rb.setDistanceCorrectionState(1);
  rb.intensityMapping(false);
  EXPECT_TRUE(rb.setFiretimeCorrectionState(true));
  EXPECT_TRUE(rb.setDcfCorrectionState(true));
  rb.setDirtyMappingReflectanceFlag(true);
  EXPECT_EQ(log.take().size(), 5U);
  rb.setElevationFovFilterFlag(true);
  EXPECT_TRUE(log.take().empty());
  rb.setEchoModelReturnMode(2);
  EXPECT_EQ(log.take(), Names{"renderStateChanged"});
  rb.setLidarType("HU_V11");
  rb.setEchoModelReturnMode(0);
  EXPECT_EQ(log.take(), (Names{"vertexChanged", "renderStateChanged"})) << "tested again at once";
  const auto params = runtime->params.snapshot();
  EXPECT_TRUE(params.useCuda && params.distanceCorrection && params.firetimeCorrection && params.dcfCorrection &&
              params.dirtyMappingReflectance && params.elevationFovFilter && !params.intensityMapping);
  EXPECT_FALSE(rb.intensityMapFlag());
  rb.setMonitorViewEnabled(true);
  EXPECT_EQ(runtime->frame.deviceStatus[0], 1);
}

TEST_F(ParserTest, FrameSecondsSizeTheDecodeFrame) {
  runtime->frame.packetsPerFrame = 10;
  runtime->frame.pointsPerPacket = 4;
  struct Case {
    double seconds;
    std::int64_t ticks;
    std::uint32_t packets;
    bool accepted;
  };
  for (const Case &c : {Case{0.0, 0, 10, true}, Case{0.5, 5'000'000, 30, true}, Case{-0.3, 5'000'000, 30, false},
                        Case{std::nan(""), 5'000'000, 30, false}}) {
    rb.setFrameSeconds(c.seconds);
    EXPECT_EQ(rb.settings().frameTicks, c.ticks) << c.seconds;
    EXPECT_EQ(runtime->frame.packetCapacity, c.packets) << c.seconds;
    EXPECT_EQ(log.take().size(), c.accepted ? 1U : 0U) << c.seconds;
  }
}

TEST_F(ParserTest, ASlotMaySetAPropertyThatParsesAgain) {
  give({point(1.0F, 0.0F, 0.0F)});
  int calls = 0;
  QObject::connect(&rb, &DefaultSDKFrameRenderBuffer::someSignalReceived, &rb, [&] {
    if (calls++ == 0) rb.setRemakeConfig(true);
  });
  parse();
  EXPECT_EQ(calls, 2);
}

TEST_F(ParserTest, SelectionMarksListsAndGivesColoursBack) {
  give({point(0.5F, 0.0F, 0.0F), point(5.0F, 0.0F, 0.0F), point(0.0F, 0.0F, 0.0F, 0)});
  parse();
  const auto plain = vertices()[0].color;
  log.take();
  rb.setSelectionMatrix(QMatrix4x4());
  EXPECT_TRUE(log.take().empty());
  rb.setSelectEnabled(true);
  EXPECT_EQ(log.take(), (Names{"allSignalReceived", "spreadSheetModelChanged"}));
  EXPECT_EQ(vertices()[0].color, highlightMark);
  EXPECT_EQ(rb.spreadSheetModel().rowCount(), 1);
  rb.spreadSheetModel().setAllDisplayed(true);
  QMatrix4x4 nothing;
  nothing.fill(0.0F);
  rb.setSelectionMatrix(nothing);
  EXPECT_EQ(vertices()[0].color, plain);
  EXPECT_EQ(rb.spreadSheetModel().rowCount(), 2) << "every visible point, no hidden one";
  const auto &table = rb.spreadSheetModel();
  EXPECT_EQ(table.index(1, 7).data().toString(), QStringLiteral("5.000"));
  rb.detailDataUpdata();
  EXPECT_EQ(table.index(1, 7).data().toString(), QStringLiteral("5.000000"));
  log.take();
  rb.setSelectEnabled(false);
  EXPECT_EQ(log.take(), Names{"someSignalReceived"});
}

TEST_F(ParserTest, ColumnAttributesAddAColumnAndAPcdField) {
  const QStringList columns{"Ch",         "AziCorr(deg)", "EleCorr(deg)", "RFL",  "t(us)",    "Dist(m)",
                            "confidence", "x(m)",         "y(m)",         "z(m)", "Azi(deg)", "Ele(deg)"};
  const QStringList fields{
      "ring", "x", "y", "z", "intensity", "timestamp", "distance", "confidence", "azimuthCalib", "elevationCalib"};
  EXPECT_EQ(rb.spreadSheetModel().columnNames(), columns);
  EXPECT_EQ(rb.getPcdFieldListString(), fields);
  const LogLines lines;
  rb.addColumnAttribute("nonsense", -1);
  rb.removeColumnAttribute("RFL");
  EXPECT_EQ(lines.messages(), Names{"add column error : nonsense"});
  EXPECT_EQ(rb.spreadSheetModel().columnNames(), columns);

  rb.addColumnAttribute("AziState", 1);
  rb.addColumnAttribute("Area", -1);
  rb.removeColumnAttribute("Ch");
  EXPECT_EQ(rb.spreadSheetModel().columnNames().first(), QStringLiteral("AziState"));
  EXPECT_EQ(rb.spreadSheetModel().columnNames().last(), QStringLiteral("Area"));
  EXPECT_EQ(rb.spreadSheetModel().columnNames().size(), 13);
  EXPECT_EQ(rb.getPcdFieldListString(), fields + QStringList({"aziState", "Area"}));
  EXPECT_TRUE(rb.getPcdFieldEnabled(0));
  EXPECT_FALSE(rb.getPcdFieldEnabled(10));
  rb.setPcdFieldEnabled(10, true);
  rb.setPcdFieldEnabled(-1, true);
  EXPECT_TRUE(rb.getPcdFieldEnabled(10));
  EXPECT_FALSE(rb.getPcdFieldEnabled(12));
}

TEST_F(ParserTest, RemovalFromTheCanvasLetsGoOfPictureAndSource) {
  give({point(1.0F, 0.0F, 0.0F)});
  source.rgbMode = 4;
  source.overlayPoints = {point(1.0F, 0.0F, 0.0F)};
  source.tryFillVertices = [](const SDKPointInfo *, unsigned, int) { return true; };
  parse();
  rb.prepareForQmlRemoval();
  EXPECT_EQ(rb.rgbOverlayPrimitiveCount(), 0);
  EXPECT_TRUE(source.overlayPoints.empty());
  EXPECT_FALSE(source.tryFillVertices);
}

TEST_F(ParserTest, DetailExportRestoresWhatItChanged) {
  rb.setPlayByFrame(false);
  for (const int type : {0, 2}) {
    rb.setDetailExport(true, 1, QUrl::fromLocalFile("/elsewhere"));
    rb.setDetailExport(true, type, QUrl::fromLocalFile("/somewhere"));
    EXPECT_TRUE(rb.spreadSheetEnabled() && rb.playByFrame());
    EXPECT_EQ(rb.settings().detailExportType, type);
    EXPECT_EQ(rb.settings().detailExportPath.copy(), QStringLiteral("/somewhere"));
    rb.setDetailExport(false, type, {});
    EXPECT_FALSE(rb.spreadSheetEnabled() || rb.playByFrame());
    EXPECT_EQ(rb.settings().detailExportType, -1);
  }
}

TEST(RenderBufferSettings, SplitWindowComesFromTheSettingsFile) {
  EXPECT_FALSE(DefaultSDKFrameRenderBuffer().splitWindow());
  const QString folder = documentsFolder() + "/SkarnvisorDataFiles";
  QDir().mkpath(folder);
  {
    QSettings settings(folder + "/Settings.ini", QSettings::IniFormat);
    settings.setValue("SplitWindow", true);
  }
  EXPECT_TRUE(DefaultSDKFrameRenderBuffer().splitWindow());
  QFile::remove(folder + "/Settings.ini");
}

// For the thread sanitizer: settings, reads of the picture and repeat parses against runs of the pipeline and a
// decoder.
TEST_F(ParserTest, SettingsMayChangeWhileFramesAreParsed) {
  rb.disconnect();  // the log of signals belongs to one thread
  std::atomic<bool> stop{false};
  std::vector<SDKPointInfo> cloud(20'000, point(1.0F, 2.0F, 3.0F));
  rb.setScales({.rgbType = true, .rgbMax = 256.0F});
  std::thread pipeline([&] {
    for (int runs = 0; runs < 20 || !stop; ++runs) {
      rb.beginDecode();
      give(cloud);
      rb.endDecode();
      parse();
    }
  });
  for (int i = 0; i < 40; ++i) {
    rb.setColorMode(i % 12);
    rb.setRgbMax(static_cast<float>(100 + i));
    rb.setRgbAutoScale(i % 2 == 0);
    rb.toggleDirtry(i, false);
    rb.setSelectEnabled(i % 2 == 0);
    rb.setRemakeConfig(i % 3 == 0);
    const QByteArray picture = rb.vertex();
    EXPECT_EQ(picture.size() % 12, 0);
    rb.refreshSelectionDisplay();
  }
  stop = true;
  pipeline.join();
  EXPECT_EQ(rb.primitiveCount(), 20'000);
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
