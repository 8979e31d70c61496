#include <gtest/gtest.h>

#include "app/render/cloud_picture.h"
#include "app/render/cloud_statistics.h"
#include "app/render/ground_grid.h"
#include "tests/app/vertex_builder.h"

namespace tarvo::skarnvisor::app {
namespace {

using test::vertex;

constexpr QSize pictureSize(320, 240);
constexpr std::uint32_t halfOne = 0x3c00;

PictureStyle plainStyle(WordKind words) {
  PictureStyle style;
  style.words = words;
  style.grid = false;
  style.edges = false;
  style.pointPixels = 4;
  return style;
}

OrbitCamera cameraAhead() {
  OrbitCamera camera;
  camera.setView("back", {.radius = 20, .ground = 0, .ceiling = 5});
  return camera;
}

QPoint pixelOf(const OrbitCamera &camera, QVector3D place) {
  const float aspect = static_cast<float>(pictureSize.width()) / static_cast<float>(pictureSize.height());
  const QVector3D device = (camera.projectionMatrix(aspect) * camera.viewMatrix()).map(place);
  return {static_cast<int>((0.5F + device.x() / 2) * static_cast<float>(pictureSize.width())),
          static_cast<int>((0.5F - device.y() / 2) * static_cast<float>(pictureSize.height()))};
}

QImage draw(const QByteArray &bytes, const PictureStyle &style) {
  return drawCloud(VertexCloud({bytes}), cameraAhead(), {}, style, pictureSize);
}

int countOtherThan(const QImage &image, QRgb color) {
  int count = 0;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x) count += image.pixel(x, y) != color ? 1 : 0;
  return count;
}

TEST(CloudPicture, APointLandsWhereTheCameraProjectsIt) {
  const OrbitCamera camera = cameraAhead();
  for (const QVector3D place : {QVector3D(0, 0, 0), QVector3D(6, 3, 2), QVector3D(-7, -4, 1)}) {
    const QImage image = draw(vertex(place.x(), place.y(), place.z(), 0x0020ff40), plainStyle(WordKind::Rgb));
    const QPoint pixel = pixelOf(camera, place);
    EXPECT_EQ(image.pixel(pixel), 0xff20ff40) << place.x() << " " << place.y() << " " << place.z();
    const int drawn = countOtherThan(image, backgroundColor);
    EXPECT_GE(drawn, 9);
    EXPECT_LE(drawn, 36);
  }
}

TEST(CloudPicture, HiddenPointsAndPointsBehindTheEyeLeaveNoPixel) {
  const QByteArray bytes = vertex(0, 0, 0, hiddenWord) + vertex(0, -500, 0, 0x00ffffff);
  EXPECT_EQ(countOtherThan(draw(bytes, plainStyle(WordKind::Rgb)), backgroundColor), 0);
  EXPECT_EQ(countOtherThan(draw(vertex(0, 0, 0, hiddenWord), plainStyle(WordKind::LowHalf)), backgroundColor), 0);
}

TEST(CloudPicture, EachWordKindColoursAsItIsRead) {
  const std::uint32_t lowOneHighZero = halfOne;
  const ColorRamp ramp;
  struct Case {
    WordKind kind;
    std::uint32_t word;
    QRgb color;
  };
  const Case cases[] = {
      {WordKind::LowHalf, lowOneHighZero, ramp.at(1)},
      {WordKind::HighHalf, lowOneHighZero, ramp.at(0)},
      {WordKind::Rgb, 0x00123456, 0xff123456},
      {WordKind::LowHalf, highlightWord, highlightColor},
      {WordKind::Rgb, highlightWord, highlightColor},
      {WordKind::Velocity, 0x5c000000, ColorRamp::diverging().at(0.5)},         // 0 m/s, brightness 256
      {WordKind::Velocity, 0x5c000000 | 0x4d00, ColorRamp::diverging().at(1)},  // +20 m/s
      {WordKind::Velocity, 0xbc000000 | halfOne, ramp.at(1)},                   // an attribute
  };
  for (const Case &row : cases) {
    const QImage image = draw(vertex(0, 0, 0, row.word), plainStyle(row.kind));
    EXPECT_EQ(image.pixel(pixelOf(cameraAhead(), {0, 0, 0})), row.color) << std::hex << row.word;
  }
}

TEST(CloudPicture, TheNearerPointCoversTheFartherWhateverTheirOrder) {
  const QByteArray nearGreen = vertex(0, 0, 0, 0x0000ff00);
  const QVector3D ray = cameraAhead().target() - cameraAhead().eye();
  const QVector3D behind = cameraAhead().eye() + ray * 1.5F;
  const QByteArray farRed = vertex(behind.x(), behind.y(), behind.z(), 0x00ff0000);
  for (const QByteArray &bytes : {nearGreen + farRed, farRed + nearGreen})
    EXPECT_EQ(draw(bytes, plainStyle(WordKind::Rgb)).pixel(pixelOf(cameraAhead(), {0, 0, 0})), 0xff00ff00);
}

TEST(CloudPicture, ACloudDrawnByManyThreadsEqualsItsParts) {
  QByteArray bytes;
  for (int i = 0; i < 20000; ++i) bytes += vertex((i % 200) * 0.1 - 10, (i / 200) * 0.1 - 5, 0, 0x00808080U + (i % 64));
  QVector<QByteArray> parts;
  for (int i = 0; i < 20000; i += 2000) parts << bytes.mid(i * 12, 2000 * 12);
  const PictureStyle style = plainStyle(WordKind::Rgb);
  EXPECT_EQ(drawCloud(VertexCloud({bytes}), cameraAhead(), {}, style, pictureSize),
            drawCloud(VertexCloud(parts), cameraAhead(), {}, style, pictureSize));
}

TEST(CloudPicture, GridAndLegendAppearBesideThePoints) {
  PictureStyle style = plainStyle(WordKind::LowHalf);
  style.colorTitle = "intensity";
  const QImage legend = draw({}, style);
  EXPECT_GT(countOtherThan(legend, backgroundColor), 300);
  EXPECT_EQ(countOtherThan(legend.copy(0, 0, 100, 240), backgroundColor), 0);
  style.colorTitle.clear();
  style.grid = true;
  EXPECT_GT(countOtherThan(draw({}, style), backgroundColor), 300);
}

TEST(CloudStatistics, CountsTellShownHiddenAndHighlighted) {
  const VertexCloud cloud({vertex(1, 1, 1, halfOne) + vertex(1, 1, 1, hiddenWord), vertex(2, 2, 2, highlightWord)});
  const PointCounts counts = countPoints(cloud);
  EXPECT_EQ(counts.shown, 2U);
  EXPECT_EQ(counts.hidden, 1U);
  EXPECT_EQ(counts.highlighted, 1U);
}

TEST(CloudStatistics, ExtentAndRangeIgnoreAFewStrays) {
  QByteArray bytes;
  for (int i = 0; i < 1000; ++i) {
    const double angle = i * 0.1;
    // Halves from 0x2c00 (0.0625) on: the last is far below 1.
    bytes += vertex(30 * std::sin(angle), 30 * std::cos(angle), -1.8, 0x2c00U + static_cast<unsigned>(i));
  }
  for (int i = 0; i < 5; ++i) bytes += vertex(900, 900, 200, halfOne);
  bytes += vertex(0, 0, 0, halfOne) + vertex(1000, 1000, 1000, hiddenWord);
  const VertexCloud cloud({bytes});
  const SceneExtent extent = sceneExtent(cloud);
  EXPECT_NEAR(extent.radius, 30, 0.1);
  EXPECT_NEAR(extent.ground, -1.8, 0.01);
  const ValueRange range = stretchedRange(cloud, WordKind::LowHalf);
  EXPECT_NEAR(range.low, 0.0625, 0.002);
  EXPECT_LT(range.high, 0.13F);
  EXPECT_EQ(stretchedRange(VertexCloud({vertex(1, 1, 1, hiddenWord)}), WordKind::LowHalf).high, 1.0F);
}

TEST(GroundGrid, RingsStandAtRoundDistancesAroundTheScene) {
  for (const float radius : {2.0F, 18.0F, 60.0F, 240.0F}) {
    const GroundGrid grid = groundGrid({.radius = radius, .ground = -2, .ceiling = 3});
    EXPECT_GE(grid.labels.size(), 3U) << radius;
    EXPECT_LE(grid.labels.size(), 8U) << radius;
    EXPECT_GE(grid.labels.back().at.y(), radius * 0.9F);
    EXPECT_LE(grid.labels.back().at.y(), radius * 1.31F);
  }
}

}  // namespace
}  // namespace tarvo::skarnvisor::app
