// Channel gains and image-signal settings as the panels of a colour lidar bring them in.
#include <gtest/gtest.h>

#include <QFile>
#include <QFileInfo>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QUrl>

#include "contracts/runtime/decoded_frame_resize.h"
#include "contracts/runtime/sdk_source.h"
#include "default/pipeline/default_sdk_frame_render_buffer.h"
#include "tests/support/inert_runtime.h"

namespace tarvo::skarnvisor::test {
namespace {

class ImageRuntime : public tarvo::test::InertRuntime {
 public:
  int LoadFiretimesFile(const std::string &) override { return loads ? 0 : -1; }
  bool IsFiretimesLoadSuccess() const override { return loads; }
  void ExecuteWithIspLock(const std::function<void()> &work) override {
    ++locked;
    work();
  }
  int ReapplyIsp(DecodedFrame *) override {
    ++reapplied;
    return 0;
  }

  bool loads = true;
  int locked = 0;
  int reapplied = 0;
};

class ImageSignalFiles : public testing::Test {
 protected:
  ImageSignalFiles() {
    source.runtime = runtime;
    buffer.setSource(&source);
  }
  QString write(const char *name, int rows) const {
    QFile file(folder.filePath(name));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    for (int row = 0; row < rows; ++row) file.write(QByteArray::number(row) + ",1,2,3\n");
    return file.fileName();
  }
  lidar::FrameDecodeParam params() { return runtime->params.snapshot(); }

  ImageRuntime *runtime = new ImageRuntime;  ///< owned by the source
  SDKSource source;
  DefaultSDKFrameRenderBuffer buffer;
  QTemporaryDir folder;
  QSignalSpy names{&buffer, &DefaultSDKFrameRenderBuffer::fileDirChanged};
};

TEST_F(ImageSignalFiles, GainsOfTheTypesOwnSizeAreKeptAndHandedToTheDecoder) {
  const QString standing = folder.filePath("kept/gains_default.csv");
  buffer.calibrationPaths().channelEqPath.set(standing);
  const QString gains = write("gains.csv", 400);  // half of 540 rows are enough, half of 1080 are not
  buffer.setLidarType("NBQ_COLOR_V3");
  EXPECT_FALSE(buffer.importChannelEqFile(gains));
  EXPECT_FALSE(buffer.importChannelEqFile(folder.filePath("none.csv")));
  EXPECT_FALSE(params().isp.channelEqEnable);
  EXPECT_FALSE(QFile::exists(standing));
  EXPECT_EQ(names.count(), 0);

  buffer.setLidarType("NBW_PEAK_V8");
  EXPECT_FALSE(buffer.importChannelEqFile(write("of another type.csv", 1080)));
  EXPECT_TRUE(buffer.importChannelEqFile(QUrl::fromLocalFile(gains)));
  EXPECT_EQ(runtime->locked, 1);
  EXPECT_TRUE(params().isp.channelEqEnable);
  EXPECT_EQ(params().isp.channelEqPath, gains.toLocal8Bit().toStdString());
  EXPECT_EQ(QFileInfo(standing).size(), QFileInfo(gains).size());
  EXPECT_EQ(buffer.channelEqFileDir(), "gains.csv");
  EXPECT_EQ(names.count(), 1);
}

TEST_F(ImageSignalFiles, AReloadWorksItselfIntoTheFrameAtHand) {
  EXPECT_FALSE(buffer.reloadIspConfigAndReapply());
  EXPECT_FALSE(buffer.reloadChannelEqAndReapply());
  buffer.calibrationPaths().firetimesPath.set(write("isp.csv", 1));
  EXPECT_TRUE(buffer.reloadIspConfigAndReapply());
  EXPECT_EQ(runtime->reapplied, 0) << "there is no frame yet";

  runtime->frame.pointsPerPacket = 8;
  runtime->frame.packetsPerFrame = 2;
  ASSERT_TRUE(lidar::resizeDecodedFrame(runtime->frame, 1));
  const std::size_t capacity = std::size_t{runtime->frame.packetCapacity} * 8;
  runtime->frame.pointCount = 3;
  runtime->frame.points[2].x = 7.5F;
  source.pointCount = 1;
  source.points.resize(1);
  EXPECT_TRUE(buffer.reloadIspConfigAndReapply());
  EXPECT_EQ(runtime->reapplied, 1);
  EXPECT_EQ(source.pointCount, 3);
  ASSERT_EQ(source.points.size(), capacity);
  EXPECT_EQ(source.points[2].x, 7.5F);

  runtime->loads = false;
  EXPECT_FALSE(buffer.reloadIspConfigAndReapply());
  EXPECT_FALSE(buffer.importIspConfigFile(QUrl::fromLocalFile(write("other.csv", 1))));
  EXPECT_EQ(runtime->reapplied, 1);
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
