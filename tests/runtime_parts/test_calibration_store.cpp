#include <gtest/gtest.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <chrono>
#include <cmath>
#include <memory>
#include <string>
#include <thread>

#include "runtime/calibration/calibration_store.h"

namespace {

using namespace tarvo::lidar;

std::span<const std::uint8_t> bytesOf(const std::string &text) {
  return {reinterpret_cast<const std::uint8_t *>(text.data()), text.size()};
}

std::string corrections(int channels, float elevation) {
  std::string text = "channel,elevation,azimuth\n";
  for (int c = 1; c <= channels; ++c) text += std::to_string(c) + ',' + std::to_string(elevation) + ",0.5\n";
  return text;
}

TEST(CalibrationStore, KeepsWhatWasLoadedWhenAnotherLoadFails) {
  QTemporaryDir folder;
  CalibrationStore store;
  EXPECT_FALSE(store.isLoaded(CalibrationKind::Corrections));
  ASSERT_EQ(store.loadBytes(CalibrationKind::Corrections, bytesOf(corrections(4, 3.0F)), "capture"), 0);
  const auto before = store.snapshot();

  QFile bad(folder.filePath("bad.csv"));
  ASSERT_TRUE(bad.open(QIODevice::WriteOnly));
  bad.write("channel,elevation,azimuth\n1,1,0\n2,95,0\n");
  bad.close();
  EXPECT_EQ(store.loadFile(CalibrationKind::Corrections, bad.fileName().toStdString()), -2);
  EXPECT_EQ(store.loadFile(CalibrationKind::Corrections, folder.filePath("none.csv").toStdString()), -1);
  EXPECT_EQ(store.loadFile(CalibrationKind::Corrections, folder.path().toStdString()), -1);
  QFile huge(folder.filePath("huge.csv"));
  ASSERT_TRUE(huge.open(QIODevice::WriteOnly) && huge.resize(qint64{1} << 30)) << "one line of a gigabyte, and sparse";
  EXPECT_EQ(store.loadFile(CalibrationKind::Corrections, huge.fileName().toStdString()), -1);
  store.setChannels(4);
  for (const int channels : {1, 3, 5})
    EXPECT_EQ(store.loadBytes(CalibrationKind::Corrections, bytesOf(corrections(channels, 1.0F)), "other lidar"), -2);
  EXPECT_EQ(store.snapshot(), before);
  EXPECT_TRUE(store.isLoaded(CalibrationKind::Corrections));
  EXPECT_EQ(store.elevations()[3], 3.0F);
  EXPECT_FALSE(store.isLoaded(CalibrationKind::Firetimes));
}

TEST(CalibrationStore, ExportsWhatItLoadsAndLeavesTheOldFileWholeOnFailure) {
  QTemporaryDir folder;
  CalibrationStore store;
  const std::string path = folder.filePath("default_KR2.dat").toStdString();
  EXPECT_EQ(store.exportFile(CalibrationKind::Corrections, path), -1);
  EXPECT_FALSE(QFile::exists(QString::fromStdString(path)));

  ASSERT_EQ(store.loadBytes(CalibrationKind::Corrections, bytesOf(corrections(5, -7.25F)), "capture"), 0);
  store.setFrameSpan({1.5, 2.5});
  ASSERT_EQ(store.exportFile(CalibrationKind::Corrections, path), 0);
  CalibrationStore other;
  ASSERT_EQ(other.loadFile(CalibrationKind::Corrections, path), 0);
  EXPECT_EQ(other.snapshot()->corrections->elevations, store.snapshot()->corrections->elevations);
  EXPECT_EQ(other.frameSpan(), (std::vector<double>{1.5, 2.5}));
  EXPECT_EQ(store.exportFile(CalibrationKind::Corrections, folder.filePath("no/such/folder.csv").toStdString()), -2);
  EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files).size(), 1);
}

TEST(CalibrationStore, ViewArraysKeepTheirPlaceAndTheDisplayFlags) {
  CalibrationStore store;
  float *elevations = store.elevations();
  ASSERT_EQ(store.loadBytes(CalibrationKind::Corrections, bytesOf(corrections(4, 1.0F)), "a"), 0);
  EXPECT_EQ(store.azimuthsOdd(), nullptr);
  store.displayed()[2] = false;
  ASSERT_EQ(store.loadBytes(CalibrationKind::Corrections,
                            bytesOf("channel,elevation,azimuth,azimuth_odd,section\n1,2,3,4,0\n2,2,5,6,1\n"), "b"),
            0);
  EXPECT_EQ(store.elevations(), elevations);
  EXPECT_EQ(elevations[1], 2.0F);
  EXPECT_EQ(elevations[3], 0.0F) << "left behind by the longer table";
  ASSERT_NE(store.azimuthsOdd(), nullptr);
  EXPECT_EQ(store.azimuthsOdd()[1], 6.0F);
  EXPECT_FALSE(store.isDisplayed(2));
  EXPECT_TRUE(store.isDisplayed(-1) && store.isDisplayed(maxChannels));

  SvSdkCorrectionSectionView view;
  EXPECT_EQ(store.section(1, &view), 1);
  EXPECT_EQ(view.azimuths[0], 5.0F);
  EXPECT_EQ(store.section(2, &view), 0);
  EXPECT_EQ(store.section(4, &view), 0);
  const auto copy = store.correctionSnapshot();
  EXPECT_EQ(copy.azimuthsOdd, (std::vector<float>{4.0F, 6.0F}));
  EXPECT_EQ(copy.generation, 2U);
}

TEST(CalibrationStore, GridLayoutSpreadsChannelsOverTheStrideAsDirections) {
  CalibrationStore store;
  ASSERT_EQ(store.loadBytes(CalibrationKind::Corrections,
                            bytesOf("channel,elevation,azimuth\n1,0,0\n2,0,90\n3,30,0\n4,90,0\n"), "grid"),
            0);
  store.setViewLayout({2, 512, true});
  const float *directions = store.azimuths();
  EXPECT_NEAR(directions[3 * 1 + 0], 1.0F, 1e-6);                // channel 2: along x
  EXPECT_NEAR(directions[3 * 512 + 1], std::sqrt(0.75F), 1e-6);  // channel 3: second row
  EXPECT_NEAR(directions[3 * 513 + 2], 1.0F, 1e-6);              // channel 4: straight up
  EXPECT_EQ(store.elevations()[513], 90.0F);
}

TEST(CalibrationStore, ASnapshotIsWholeWhileOthersLoad) {
  CalibrationStore store;
  const std::jthread loader([&](const std::stop_token &stop) {
    for (int n = 1; !stop.stop_requested(); ++n)
      store.loadBytes(CalibrationKind::Corrections, bytesOf(corrections(n % 60 + 1, float(n % 60))), "thread");
  });
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
  std::shared_ptr<const CorrectionTable> last;
  for (int changes = 0; changes < 60 && std::chrono::steady_clock::now() < deadline;) {
    const auto table = store.snapshot()->corrections;
    if (!table || table == last) continue;
    last = table;
    ++changes;
    ASSERT_EQ(table->elevations.size(), std::size_t(table->elevations.front()) + 1);
    ASSERT_EQ(table->elevations.front(), table->elevations.back());
  }
  EXPECT_NE(last, nullptr) << "the loader never got in";
}

}  // namespace
