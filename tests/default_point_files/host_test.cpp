// The pipeline as the host builds and plays it.
#include <gtest/gtest.h>

#include <QFile>
#include <QSignalSpy>
#include <atomic>

#include "contracts/host/registration.h"
#include "default/point_files/default_pcd_file_loader.h"
#include "default/point_files/default_pcd_loader.h"
#include "default/point_files/default_pcd_parser.h"
#include "default/point_files/default_pcd_producer.h"
#include "host/core/host_core.h"
#include "tests/default_point_files/point_file_fixture.h"
#include "tests/support/wait_for.h"

namespace tarvo::skarnvisor {
namespace {

using namespace test;

/// A host with the plug-in's classes, and one opened source.
struct Opened {
  HostCore host;
  QString fault;
  Pipeline *pipeline = nullptr;

  explicit Opened(const QString &path) {
    for (const QMetaObject *meta : {&DefaultPcdLoader::staticMetaObject, &DefaultPcdFileLoader::staticMetaObject,
                                    &DefaultPcdProducer::staticMetaObject, &DefaultPcdParser::staticMetaObject})
      Registration::regist(QString::fromLatin1(meta->className()), meta);
    QSignalSpy opened(&host, &HostCore::opened);
    QSignalSpy failed(&host, &HostCore::openFailed);
    host.openFolder(path);
    EXPECT_TRUE(waitFor([&] { return opened.count() + failed.count() > 0; }));
    if (!failed.isEmpty()) fault = failed.at(0).at(0).toString();
    if (!host.pipelines().isEmpty()) pipeline = host.pipelines().constFirst();
  }

  bool show(int frame) {
    host.timeline()->seekFrame(frame);
    return waitFor([this] { return !pipeline->isBusy(); });
  }
  DefaultPcdFrameRenderBuffer &buffer() {
    return *qobject_cast<DefaultPcdFrameRenderBuffer *>(pipeline->renderBuffer());
  }
};

TEST(Host, AFolderOpensShowsItsFramesAndSurvivesABadOne) {
  const QString folder = freshFolder("host");
  writeInto(folder, "1.0.bin", bytesOf(std::uint32_t{1}) + binRecord(1, 2, 3, 4, 5, 6));
  writeInto(folder, "2.0.ply", "ply\nnothing sensible\nend_header\n");
  writeInto(folder, "3.0.bin", bytesOf(std::uint32_t{2}) + binRecord(1, 2, 3, 4, 5, 6) + binRecord(1, 2, 3, 4, 5, 6));
  Opened opened(folder);
  ASSERT_EQ(opened.fault, QString());
  EXPECT_EQ(opened.pipeline->frameCount(), 3);
  std::atomic<int> failures{0};
  QObject::connect(
      opened.pipeline->chain().last(), &Functor::finished, opened.pipeline->chain().last(),
      [&](const QString &error) { failures += error.isEmpty() ? 0 : 1; }, Qt::DirectConnection);
  ASSERT_TRUE(opened.show(0));
  EXPECT_EQ(opened.buffer().primitiveCount(), 1);
  ASSERT_TRUE(opened.show(1));
  EXPECT_GE(failures, 1);
  EXPECT_EQ(opened.buffer().primitiveCount(), 1);
  ASSERT_TRUE(opened.show(2));
  EXPECT_EQ(opened.buffer().primitiveCount(), 2);

  failures = 0;
  QFile::remove(folder + "/1.0.bin");
  ASSERT_TRUE(opened.show(0));
  EXPECT_GE(failures, 1) << "a file that vanished while its folder plays is told";
  EXPECT_EQ(opened.buffer().primitiveCount(), 2) << "and leaves the frame before it";
}

TEST(Host, SingleFilesAndFoldersWithoutPoints) {
  const QString folder = freshFolder("host-single");
  writeInto(folder, "cloud.bin", bytesOf(std::uint32_t{1}) + binRecord(1, 2, 3, 4, 5, 6));
  Opened single(folder + "/cloud.bin");
  ASSERT_EQ(single.fault, QString());
  ASSERT_TRUE(single.show(0));
  EXPECT_EQ(single.buffer().primitiveCount(), 1);
  EXPECT_NE(Opened(folder).fault, QString()) << "no file of the folder has a time in its name";
  EXPECT_NE(Opened(folder + "/none").fault, QString());
}

TEST(Host, SettingsMayChangeWhileFramesAreMade) {
  const QString folder = freshFolder("host-storm");
  std::string records;
  for (int i = 0; i < 20'000; ++i)
    records += binRecord(1, 2, static_cast<float>(i % 9), 4, 5, static_cast<std::uint16_t>(i % 64 + 1));
  for (const char *name : {"1.0.bin", "1.1.bin", "1.2.bin"})
    writeInto(folder, name, bytesOf(std::uint32_t{20'000}) + records);
  Opened opened(folder);
  ASSERT_EQ(opened.fault, QString());
  DefaultPcdFrameRenderBuffer &buffer = opened.buffer();
  for (int round = 0; round < 60; ++round) {
    opened.host.timeline()->seekFrame(round % 3);
    buffer.setColorMode(round % 9);
    buffer.setDisplayedFlag(round % 64, round % 2 == 0);
    buffer.setSelectEnabled(round % 4 == 0);
    buffer.setDisableSubpixelChannel(round % 3 == 0);
    EXPECT_GE(buffer.vertex().size(), 20'000 * 12);
    QCoreApplication::processEvents();
  }
  EXPECT_TRUE(waitFor([&] { return !opened.pipeline->isBusy(); }));
}

}  // namespace
}  // namespace tarvo::skarnvisor
