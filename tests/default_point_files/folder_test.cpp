// From a folder to the frames of a clip.
#include <gmock/gmock.h>
#include <unistd.h>

#include <QFile>
#include <QSemaphore>
#include <algorithm>

#include "default/point_files/point_file_scan.h"
#include "host/core/functor_scheduler.h"
#include "tests/default_point_files/pipeline_fixture.h"

namespace tarvo::skarnvisor {
namespace {

using namespace test;
using testing::HasSubstr;

TEST(FileNameRule, DigitsAroundTheFirstDotOrElseTheFirstDigits) {
  struct Case {
    const char *name;
    double seconds;  ///< negative: no time
  };
  const Case cases[] = {{"frame_1700000000.250", 1700000000.25},
                        {"scan1700000000250", 1700000000.25},
                        {"a1.2b3", 1.2},
                        {"100", 0.1},
                        {"3.5", 3.5},
                        {"x.y", 0.0},
                        {".5", 0.5},
                        {"7.", 7.0},
                        {"1.2.3", 1.2},
                        {"a5b6", 0.005},
                        {"abc", -1.0},
                        {"", -1.0},
                        {"frame_20121214T142255.814212", 142255.814212},
                        {"99999999999999999999", 99999999999999999.999}};
  for (const Case &c : cases) {
    const auto seconds = secondsInName(QString::fromUtf8(c.name));
    ASSERT_EQ(seconds.has_value(), c.seconds >= 0) << c.name;
    if (seconds) {
      EXPECT_DOUBLE_EQ(*seconds, c.seconds) << c.name;
    }
  }
  // Digits of other scripts are letters here.
  EXPECT_FALSE(secondsInName(QString::fromUtf8("٣٤")).has_value());
}

TEST(Folder, AcceptedFilesInTheOrderOfTime) {
  const QString folder = freshFolder("folder");
  for (const char *name : {"100.pcd", "2000.ply", "3.5.bin", "abc.pcd", "x.y.PCD", "1000.txt", "50.Pcd", "pcd"})
    writeInto(folder, name, "");
  QDir(folder).mkpath("700.pcd");
  PointPipeline pipeline;
  pipeline.loader.source()->path = folder;
  pipeline.clip.setPcapActive(true);
  QSignalSpy changed(&pipeline.clip, &TimeIntervalBuffer::changed);
  const std::string printed = pipeline.scan();
  EXPECT_EQ(changed.count(), 1);
  EXPECT_FALSE(pipeline.clip.pcapActive()) << "loading is over";
  EXPECT_EQ(pipeline.clip.frameCount(), 4);
  EXPECT_EQ(pipeline.clip.fileList(),
            (QStringList{folder + "/x.y.PCD", folder + "/100.pcd", folder + "/2000.ply", folder + "/3.5.bin"}));
  EXPECT_DOUBLE_EQ(pipeline.clip.getFrameStartSeconds(1), 0.1);
  EXPECT_DOUBLE_EQ(pipeline.clip.getFrameStartSeconds(2), 2.0);
  EXPECT_DOUBLE_EQ(pipeline.clip.getFrameStartSeconds(4), 3.5) << "past the end: the last";
  EXPECT_DOUBLE_EQ(pipeline.clip.getFrameStartSeconds(-1), 3.5);
  EXPECT_DOUBLE_EQ(pipeline.clip.beginSeconds(), 0.0);
  EXPECT_DOUBLE_EQ(pipeline.clip.endSeconds(), 3.61);
  for (const char *name : {"abc.pcd", "1000.txt", "50.Pcd", "pcd"})
    EXPECT_THAT(printed, HasSubstr("not support file type: " + folder.toStdString() + "/" + name + "\n"));
  EXPECT_THAT(printed, HasSubstr("timestampStr: 0.100000\n"));
  EXPECT_THAT(printed, testing::Not(HasSubstr("700.pcd")));
}

TEST(Folder, TimesFindTheirFrames) {
  const QString folder = freshFolder("times");
  for (const char *name : {"1.0.pcd", "2.0.pcd", "3.0.pcd"}) writeInto(folder, name, "");
  PointPipeline pipeline(folder);
  DefaultPcdFileBuffer &clip = pipeline.clip;
  const auto at = [](double seconds) { return ticksFromSeconds(seconds).count(); };
  QSignalSpy moved(&clip, &DefaultPcdFileBuffer::frameIDChanged);
  EXPECT_EQ(clip.frameIndexAt(at(0.5)), -1);
  EXPECT_EQ(clip.fileAt(at(0.5)), QString());
  EXPECT_EQ(clip.frameIndexAt(at(1.0)), 0);
  EXPECT_EQ(clip.frameIndexAt(at(1.9999)), 0);
  EXPECT_EQ(clip.fileAt(at(2.5)), folder + "/2.0.pcd");
  EXPECT_EQ(clip.frameID(), 1);
  EXPECT_EQ(moved.count(), 1);
  EXPECT_EQ(clip.frameIndexAt(at(3.1)), 2);
  EXPECT_EQ(clip.frameIndexAt(at(3.2)), -1);
  EXPECT_EQ(clip.findFrameID(0.5), 0);
  EXPECT_EQ(clip.findFrameID(2.2), 1);
  clip.setPcapActive(true);
  EXPECT_EQ(clip.frameIndexAt(at(3.1)), 1) << "the last frame does not count while loading";
  EXPECT_EQ(clip.fileAt(at(3.1)), folder + "/3.0.pcd");
  EXPECT_TRUE(clip.cutPcap(QUrl(), 0, 1) && clip.cutPcap(QUrl(), QString(), QString()));
}

TEST(Folder, OneFileAFileItselfNoFileAndNoFolder) {
  const QString folder = freshFolder("one");
  writeInto(folder, "12.5.bin", bytesOf(std::uint32_t{0}));
  writeInto(folder, "plain.bin", bytesOf(std::uint32_t{0}));
  {
    PointPipeline pipeline(folder);
    EXPECT_EQ(pipeline.clip.frameCount(), 1);
    EXPECT_EQ(pipeline.clip.fileAt(ticksFromSeconds(12.55).count()), folder + "/12.5.bin");
    EXPECT_EQ(pipeline.clip.frameIndexAt(ticksFromSeconds(12.5).count()), 0);
  }
  {
    PointPipeline pipeline(folder + "/plain.bin");
    EXPECT_EQ(pipeline.clip.fileAt(0), folder + "/plain.bin");
    EXPECT_TRUE(pipeline.clip.isKnown());
  }
  for (const QString &path : {freshFolder("empty"), QStringLiteral("no/such/folder")}) {
    PointPipeline pipeline(path);
    EXPECT_EQ(pipeline.clip.frameCount(), 0);
    EXPECT_EQ(pipeline.clip.getFrameStartSeconds(0), 0.0);
    EXPECT_EQ(pipeline.clip.fileAt(0), QString());
    EXPECT_EQ(pipeline.clip.frameIndexAt(0), -1);
  }
}

TEST(Folder, LinksCountAndBrokenOnesDoNot) {
  const QString folder = freshFolder("links");
  writeInto(folder, "1.0.bin", bytesOf(std::uint32_t{0}));
  const auto link = [&](const char *target, const char *name) {
    ASSERT_EQ(::symlink(target, QFile::encodeName(folder + "/" + name).constData()), 0);
  };
  link("1.0.bin", "2.0.bin");
  link("gone.bin", "3.0.bin");
  link("4.0.bin", "4.0.bin");
  link(".", "5.0.bin");
  PointPipeline pipeline(folder);
  EXPECT_EQ(pipeline.clip.frameCount(), 2);
  pipeline.showAt(2.0);
  EXPECT_EQ(pipeline.buffer.primitiveCount(), 0);
}

TEST(Folder, NamesWithOtherLettersAreRead) {
  const QString folder = freshFolder("ordner");
  const QByteArray bytes = QByteArray::fromStdString(bytesOf(std::uint32_t{1}) + binRecord(1, 2, 3, 4, 5, 6));
  QFile file(folder + QString::fromUtf8("/größe-雷达-1.0.bin"));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << file.errorString().toStdString();
  file.write(bytes);
  file.close();
  PointPipeline pipeline(folder);
  ASSERT_EQ(pipeline.clip.frameCount(), 1);
  pipeline.showAt(1.0);
  EXPECT_EQ(pipeline.buffer.primitiveCount(), 1);
}

TEST(Folder, ALongListingShowsItsFirstFramesMeanwhile) {
  const QString folder = freshFolder("long");
  for (int i = 0; i < 20; ++i) writeInto(folder, (std::to_string(1000 + i * 7 % 20) + ".bin").c_str(), "");
  writeInto(folder, "none.txt", "");
  FunctorScheduler scheduler;
  DefaultPcdFileLoader loader;
  loader.setScheduler(&scheduler);
  loader.setStretch(std::chrono::milliseconds(0));
  auto source = QSharedPointer<FileSource>::create();
  source->path = folder;
  loader.takeOver(source);
  DefaultPcdFileBuffer &clip = *loader.defaultPcdBuffer();
  clip.setPcapActive(true);
  std::vector<int> counts;
  QSemaphore over;
  QObject::connect(
      &loader, &Functor::finished, &loader,
      [&] {
        counts.push_back(clip.frameCount());
        if (!clip.pcapLoading()) over.release();
      },
      Qt::DirectConnection);
  loader.run();
  ASSERT_TRUE(over.tryAcquire(1, 30'000));
  scheduler.stop();
  EXPECT_EQ(counts.front(), 1) << "shown while the rest is listed";
  EXPECT_EQ(counts.back(), 20);
  EXPECT_TRUE(std::is_sorted(counts.begin(), counts.end()));
  for (int i = 0; i < 20; ++i) EXPECT_NEAR(clip.getFrameStartSeconds(i), 1.0 + i * 0.001, 1e-6);
}

TEST(Folder, ASecondScanAppends) {
  const QString folder = freshFolder("twice");
  writeInto(folder, "1.0.bin", "");
  PointPipeline pipeline(folder);
  pipeline.scan();
  EXPECT_EQ(pipeline.clip.frameCount(), 2);
}

}  // namespace
}  // namespace tarvo::skarnvisor
