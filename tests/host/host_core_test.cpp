#include "host/core/host_core.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QSignalSpy>
#include <memory>
#include <numeric>
#include <vector>

#include "contracts/host/log.h"
#include "host/core/functor_scheduler.h"
#include "host/core/plugin_loader.h"
#include "tests/host/fake_pipeline.h"
#include "tests/support/test_environment.h"
#include "tests/support/wait_for.h"

namespace tarvo::skarnvisor::test {
namespace {

QString makeFile(const QString &name, const QByteArray &content = "x") {
  QFile file(processFolder() + QLatin1Char('/') + name);
  EXPECT_TRUE(file.open(QIODevice::WriteOnly));
  file.write(content);
  return file.fileName();
}

class HostCoreTest : public testing::Test {
 protected:
  HostCoreTest() {
    Logger::GetInstance().setConsoleMask(0);
    registerFakes();
    Journal::instance().clear();
    FakeClipLoader::framesOfClip = 25;
    host = std::make_unique<HostCore>();
    QObject::connect(host.get(), &HostCore::opened, host.get(),
                     [this](Pipeline *pipeline) { opened.append(pipeline); });
    QObject::connect(host.get(), &HostCore::openFailed, host.get(),
                     [this](const QString &why) { failures.append(why); });
  }
  ~HostCoreTest() override {
    host.reset();
    Logger::GetInstance().flush();
    Logger::GetInstance().setConsoleMask(logDefaultMask);
  }

  Pipeline *open(const QString &path) {
    failures.clear();
    const int before = opened.size();
    host->openCapture(path);
    waitFor([&] { return opened.size() > before || !failures.isEmpty(); });
    return opened.size() > before ? opened.last() : nullptr;
  }

  std::unique_ptr<HostCore> host;
  QList<Pipeline *> opened;
  QStringList failures;
};

TEST_F(HostCoreTest, AnOpenedCaptureIsWiredLoadedAndShown) {
  Pipeline *const pipeline = open(makeFile(QStringLiteral("fine.pcap")));
  ASSERT_NE(pipeline, nullptr) << failures.join(QLatin1Char(' ')).toStdString();
  EXPECT_EQ(pipeline->title(), QStringLiteral("fine.pcap"));
  ASSERT_NE(pipeline->renderBuffer(), nullptr);
  EXPECT_EQ(pipeline->renderBuffer()->renderSource(), QStringLiteral("Fake.qml"));
  ASSERT_NE(pipeline->clip(), nullptr);
  EXPECT_TRUE(pipeline->clip()->pcapActive());
  EXPECT_EQ(pipeline->frameCount(), 25);
  EXPECT_EQ(pipeline->track()->clips(), QList<ClipBuffer *>{pipeline->clip()});
  EXPECT_EQ(pipeline->chain().size(), 2);
  EXPECT_TRUE(waitFor([] { return !Journal::instance().frames().empty(); }));
  EXPECT_EQ(Journal::instance().frames().front(), 0);
  EXPECT_FALSE(host->isOpening());
}

TEST_F(HostCoreTest, PlayedFramesReachTheProducerOnceEachAndInOrder) {
  ASSERT_NE(open(makeFile(QStringLiteral("fine.pcap"))), nullptr);
  Timeline *const timeline = host->timeline();
  ASSERT_TRUE(waitFor([] { return !Journal::instance().frames().empty(); }));
  timeline->play();
  ASSERT_TRUE(waitFor([&] { return !timeline->isPlaying(); }));
  std::vector<int> expected(25);
  std::iota(expected.begin(), expected.end(), 0);
  EXPECT_EQ(Journal::instance().frames(), expected);
}

TEST_F(HostCoreTest, AGrowingClipIsSeenSoonWhetherItAnnouncesItOrNot) {
  ASSERT_NE(open(makeFile(QStringLiteral("fine.pcap"))), nullptr);
  int frames = FakeClipLoader::framesOfClip;
  for (const bool announces : {true, false}) {
    FakeClip::announcesChanges = announces;
    QElapsedTimer timer;
    timer.start();
    FakeClipLoader::framesOfClip = ++frames;
    EXPECT_TRUE(waitFor([&] { return host->timeline()->frameCount() == frames; }, 2000));
    EXPECT_LT(timer.elapsed(), 1000);
  }
  FakeClip::announcesChanges = true;
}

TEST_F(HostCoreTest, FailuresSayWhatAndWhyAndLeaveNothingBehind) {
  const auto failure = [this](const QString &path) {
    EXPECT_EQ(open(path), nullptr);
    return failures.value(0).toStdString();
  };
  EXPECT_EQ(failure(makeFile(QStringLiteral("refused"))), "refused cannot be opened: no lidar packets in it.");
  EXPECT_EQ(failure(makeFile(QStringLiteral("broken"))), "broken cannot be opened: the pipeline came apart.");
  EXPECT_EQ(failure(processFolder() + QStringLiteral("/nowhere.pcap")),
            "nowhere.pcap cannot be opened: the file does not exist.");
  EXPECT_TRUE(host->root().subCategories().isEmpty());
  EXPECT_NE(open(makeFile(QStringLiteral("fine.pcap"))), nullptr) << "and the next one opens";
}

TEST_F(HostCoreTest, AMissingLoaderClassIsAFailureToo) {
  host->openFolder(processFolder());
  ASSERT_TRUE(waitFor([this] { return !failures.isEmpty(); }));
  EXPECT_NE(failures[0].indexOf(QLatin1String("DefaultPcdLoader")), -1) << failures[0].toStdString();
  host->openLivePort(70'000);
  ASSERT_TRUE(waitFor([this] { return failures.size() == 2; }));
}

TEST_F(HostCoreTest, AnEndlessOpeningCanBeCancelledAndQuitDuring) {
  host->openCapture(makeFile(QStringLiteral("endless")));
  host->openCapture(makeFile(QStringLiteral("fine.pcap")));
  ASSERT_TRUE(waitFor([this] { return !host->root().functors().isEmpty() && !host->root().scheduler().isIdle(); }));
  host->cancelOpening();
  ASSERT_TRUE(waitFor([this] { return !failures.isEmpty(); }));
  EXPECT_EQ(failures[0], QStringLiteral("endless cannot be opened: the opening was cancelled."));
  EXPECT_FALSE(host->isOpening()) << "what was behind it is forgotten";
  ASSERT_NE(open(makeFile(QStringLiteral("fine.pcap"))), nullptr) << "failures " << failures.size();
  host->openCapture(makeFile(QStringLiteral("endless")));
  ASSERT_TRUE(waitFor([this] { return !host->root().scheduler().isIdle(); }));
  host.reset();
}

TEST_F(HostCoreTest, ClosingWarnsThenStopsThenPreparesThenAnnouncesThenDeletes) {
  Pipeline *const pipeline = open(makeFile(QStringLiteral("fine.pcap")));
  ASSERT_NE(pipeline, nullptr);
  ASSERT_TRUE(waitFor([] { return !Journal::instance().frames().empty(); }));
  QPointer<RenderBuffer> render = pipeline->renderBuffer();
  QObject::connect(host.get(), &HostCore::stopping, host.get(),
                   [](Pipeline *) { Journal::instance().add(QStringLiteral("stopping")); });
  QObject::connect(host.get(), &HostCore::closing, host.get(), [](Pipeline *closing) {
    EXPECT_TRUE(closing->instance()->scheduler().isIdle());
    Journal::instance().add(QStringLiteral("closing"));
  });
  QObject::connect(host.get(), &HostCore::closed, host.get(), [&](const QString &title) {
    EXPECT_EQ(title, QStringLiteral("fine.pcap"));
    EXPECT_TRUE(render.isNull());
    Journal::instance().add(QStringLiteral("closed"));
  });
  host->closePipeline(pipeline);
  EXPECT_FALSE(render.isNull()) << "the objects outlive the call";
  host->closePipeline(pipeline);
  ASSERT_TRUE(waitFor([&] { return Journal::instance().lines().contains(QStringLiteral("closed")); }));
  EXPECT_EQ(Journal::instance().lines().join(QStringLiteral(", ")).toStdString(),
            "stopping, reception stopped, render buffer prepared, closing, clip died, closed");
  EXPECT_TRUE(host->root().subCategories().isEmpty());
  EXPECT_EQ(host->timeline()->frameCount(), 0);
}

TEST_F(HostCoreTest, QuittingWithOpenAndClosingPipelinesDeletesThem) {
  Pipeline *const one = open(makeFile(QStringLiteral("fine.pcap")));
  ASSERT_NE(open(makeFile(QStringLiteral("fine.pcap"))), nullptr) << "a second of the same key";
  host->timeline()->play();
  host->closePipeline(one);
  host.reset();
  EXPECT_EQ(Journal::instance().lines().filter(QStringLiteral("clip died")).size(), 2);
}

TEST(PluginLoader, EachFaultHasASentenceOfItsOwn) {
  const QString missing = processFolder() + QStringLiteral("/libnone.so");
  const QString garbage = makeFile(QStringLiteral("libgarbage.so"), "no library at all");
  EXPECT_NE(loadPluginLibrary(missing).indexOf(QLatin1String("does not exist")), -1);
  EXPECT_NE(loadPluginLibrary(garbage).indexOf(QLatin1String("cannot be loaded")), -1);
  Dl_info log{};
  ASSERT_NE(dladdr(reinterpret_cast<const void *>(&Logger::GetInstance), &log), 0);
  EXPECT_NE(loadPluginLibrary(QFile::decodeName(log.dli_fname)).indexOf(QLatin1String("no function regist_classes")),
            -1);
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
