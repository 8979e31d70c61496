// From a chosen source to a wired pipeline.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QPointer>
#include <QSignalSpy>
#include <QThread>
#include <array>
#include <thread>

#include "contracts/host/category.h"
#include "contracts/host/plugin.h"
#include "contracts/host/registration.h"
#include "default/entry/default_sdk_buffer_loader.h"
#include "default/entry/regist_classes.h"
#include "default/pipeline/default_sdk_parser.h"
#include "tests/default_entry/scripted_runtime.h"

namespace tarvo::skarnvisor::test {
namespace {

using testing::ElementsAre;

constexpr const char *space = "tarvo::skarnvisor::";

TEST(PluginDoor, RegistersItsClassesInOrderAndEachCanBeMadeByName) {
  const std::array names = {"DefaultPcdLoader",  "DefaultSDKLoader",    "DefaultPcdFileLoader", "DefaultPcdProducer",
                            "DefaultPcdParser",  "DefaultSDKNetLoader", "DefaultSDKProducer",   "DefaultSDKParser",
                            "DefaultKRProducer", "DefaultKRParser",     "DefaultLMParser",      "DefaultLMProducer",
                            "DefaultVDGParser",  "DefaultQSParser",     "DefaultNBParser",      "DefaultFMCWParser"};
  regist_classes();
  ASSERT_EQ(registeredClasses().size(), names.size());
  for (std::size_t i = 0; i < names.size(); ++i) {
    const std::string name = std::string(space) + names[i];
    EXPECT_EQ(registeredClasses()[i]->className(), name);
    QObject parent;
    const QObject *made = Registration::create(QString::fromStdString(name), &parent);
    EXPECT_EQ(made->metaObject()->className(), name);
    EXPECT_EQ(made->parent(), &parent);
    const std::unique_ptr<QObject> free(registeredClasses()[i]->newInstance());
    EXPECT_NE(free, nullptr) << name << " without a parent";
  }
}

/// A root category with a lidar loader and a scripted source in its toggle.
struct Opening {
  explicit Opening(const std::string &type, lidar::SourceKind kind = lidar::SourceKind::CaptureFile) {
    regist_classes();
    loader = root.addFunctor(QString(space) + "DefaultSDKLoader", "loader").staticCast<DefaultSDKLoader>();
    SourceHolder holder;
    source = holder.source.data();
    runtime = holder.runtime;
    runtime->lidarType = type;
    source->driverParam.sourceKind = static_cast<int>(kind);
    source->driverParam.capturePath = "/data/drive 7/first.pcap";
    source->driverParam.liveUdpPort = 2399;
    loader->inputSDKToggle()->sdkSource().swap(holder.source);
    loader->setPause([this](std::chrono::milliseconds pause) { pauses.push_back(pause); });
  }

  template <typename T>
  T *functor(const QString &className) const {
    const Category::Instance *made = root.subCategories().value(0);
    return made ? qobject_cast<T *>(made->functor(QString(space) + className + made->key()).data()) : nullptr;
  }

  Category::Instance root;
  QSharedPointer<DefaultSDKLoader> loader;
  QPointer<SDKSource> source;
  ScriptedRuntime *runtime;
  std::vector<std::chrono::milliseconds> pauses;
};

TEST(Loader, TunesTheDecoderBeforeTheStart) {
  struct Case {
    bool fast;
    int selector;
    float expected;
  };
  for (const Case &c : {Case{true, 0, 11.0F}, Case{true, 2, 11.0F}, Case{false, 0, 4.0F}, Case{false, 2, 1.0F}}) {
    Opening opening("KR2");
    lidar::DriverParam &param = opening.source->driverParam;
    param.fastTuning = c.fast;
    param.tuningSelector = c.selector;
    param.flag1161 = true;
    (*opening.loader)();
    const lidar::DriverParam &started = opening.runtime->started;
    EXPECT_EQ(started.tuningA, c.expected) << c.fast << ' ' << c.selector;
    EXPECT_EQ(started.tuningB, 1.5F);
    EXPECT_TRUE(started.preParse);
    EXPECT_FALSE(started.flag1161);
  }
}

TEST(Loader, WaitsForTheStartAsLongAsItTakes) {
  Opening opening("KR2");
  opening.runtime->startPolls = 3;
  (*opening.loader)();
  EXPECT_THAT(opening.pauses,
              ElementsAre(std::chrono::milliseconds(30), std::chrono::milliseconds(30), std::chrono::milliseconds(30)));
  EXPECT_EQ(opening.root.subCategories().size(), 1);
}

TEST(Loader, BuildsNothingAfterAFailedStart) {
  Opening opening("KR2");
  opening.runtime->startFails = true;
  QSignalSpy changed(&opening.root, &Category::Instance::changed);
  (*opening.loader)();
  EXPECT_TRUE(opening.root.subCategories().isEmpty());
  EXPECT_EQ(changed.count(), 0);
  EXPECT_EQ(opening.loader->inputSDKToggle()->sdkSource().data(), opening.source.data());
}

TEST(Loader, AnInterruptedThreadEndsTheWait) {
  Opening opening("KR2");
  opening.runtime->startPolls = 1 << 30;
  opening.loader->setPause([](std::chrono::milliseconds) { QThread::currentThread()->requestInterruption(); });
  const std::unique_ptr<QThread> thread(QThread::create([&] { (*opening.loader)(); }));
  thread->start();
  EXPECT_TRUE(thread->wait(10'000));
  EXPECT_TRUE(opening.root.subCategories().isEmpty());
}

TEST(Loader, EachFamilyGetsItsOwnPipeline) {
  struct Case {
    const char *type, *category, *producer, *parser, *toolBox;
  };
  const Case cases[] = {
      {"XT32", "DefaultSDKCategory", "DefaultSDKProducer", "DefaultSDKParser", ""},
      {"KR2", "DefaultKRCategory", "DefaultKRProducer", "DefaultKRParser", "KRToolBox.qml"},
      {"NBW_TOP_V3_V4", "DefaultKRCategory", "DefaultKRProducer", "DefaultKRParser", "KRToolBox.qml"},
      {"LM", "DefaultLMCategory", "DefaultLMProducer", "DefaultLMParser", "LMToolBox.qml"},
      {"OrnikaQS5", "DefaultQSCategory", "DefaultSDKProducer", "DefaultQSParser", "QSToolBox.qml"},
      {"FMCW_V3", "DefaultFMCWCategory", "DefaultSDKProducer", "DefaultFMCWParser", "FMCWToolBox.qml"},
      {"NB41-6_20", "DefaultNBCategory", "DefaultSDKProducer", "DefaultNBParser", "NBToolBox.qml"},
  };
  for (const Case &c : cases) {
    Opening opening(c.type);
    (*opening.loader)();
    ASSERT_EQ(opening.root.subCategories().size(), 1) << c.type;
    const Category::Instance &made = *opening.root.subCategories().constFirst();
    EXPECT_EQ(made.category(), c.category);
    EXPECT_EQ(made.key(), QString(c.type) + "2368");
    EXPECT_STREQ(opening.functor<Functor>(c.producer)->metaObject()->className(),
                 (std::string(space) + c.producer).c_str());
    auto *parser = opening.functor<DefaultSDKParser>(c.parser);
    ASSERT_NE(parser, nullptr) << c.type;
    EXPECT_EQ(parser->defaultSDKFrameBuffer()->toolBoxSource(), c.toolBox);
    EXPECT_EQ(parser->defaultSDKFrameBuffer()->lidarType(), c.type);
  }
}

TEST(Loader, WiresThePipelineOfACapture) {
  Opening opening("KR6_31_52");
  opening.runtime->Params().write(
      [](lidar::FrameDecodeParam &param) { param.firetimeCorrection = param.dcfCorrection = true; });
  QSignalSpy changed(&opening.root, &Category::Instance::changed);
  (*opening.loader)();
  EXPECT_EQ(changed.count(), 1);

  auto *producer = opening.functor<DefaultSDKProducer>("DefaultKRProducer");
  auto *parser = opening.functor<DefaultSDKParser>("DefaultKRParser");
  auto *netLoader = opening.functor<DefaultSDKNetLoader>("DefaultSDKNetLoader");
  ASSERT_TRUE(producer && parser && netLoader);
  DefaultSDKFrameRenderBuffer *renderBuffer = parser->defaultSDKFrameBuffer();
  EXPECT_EQ(producer->successors(), QList<Functor *>{parser});
  EXPECT_EQ(producer->renderBuffer(), renderBuffer);
  EXPECT_EQ(renderBuffer->source(), opening.source);
  EXPECT_EQ(renderBuffer->laserNum(), 40);
  EXPECT_EQ(renderBuffer->channelCount(), 64);

  // The net loader has the source now, and the toggle is free for the next one.
  EXPECT_EQ(opening.loader->inputSDKToggle()->sdkSource(), nullptr);
  EXPECT_EQ(netLoader->ownedSource(), opening.source);
  EXPECT_EQ(opening.source->parent(), netLoader);

  DefaultSDKTrackBuffer *track = producer->defaultSDKTrackBuffer();
  EXPECT_EQ(track->clips(), QList<ClipBuffer *>{netLoader->defaultSDKNetBuffer()});
  EXPECT_EQ(track->port(), 2368);
  EXPECT_EQ(track->lidarName(), "KR6_31_52");
  EXPECT_EQ(track->trackBody(), "DefaultFileByFrameTrackBody.qml");
  track->setControlSelected(true);
  EXPECT_TRUE(renderBuffer->controlSelected());

  EXPECT_EQ(opening.source->sourceTitle, "first.pcap");
  EXPECT_TRUE(opening.source->correctionFailed);
  EXPECT_FALSE(opening.source->firetimesFailed);
  EXPECT_TRUE(opening.source->dcfFailed);
  EXPECT_EQ(opening.source->familyLabel, "KR6");
  EXPECT_TRUE(opening.runtime->correctionFlag);
  const lidar::FrameDecodeParam params = opening.runtime->Params().snapshot();
  EXPECT_FALSE(params.firetimeCorrection || params.dcfCorrection);
  EXPECT_FALSE(opening.source->tryFillVertices);
}

TEST(Loader, ASettingThatChangesRunsProducerAndParserAgain) {
  Opening opening("KR2");
  (*opening.loader)();
  opening.source->clipActive = true;
  auto *producer = opening.functor<DefaultSDKProducer>("DefaultKRProducer");
  auto *parser = opening.functor<DefaultSDKParser>("DefaultKRParser");
  QSignalSpy produced(producer, &Functor::finished);
  QSignalSpy parsed(parser, &Functor::finished);
  Q_EMIT parser->defaultSDKFrameBuffer()->renderStateChanged();
  EXPECT_TRUE(parsed.count() > 0 || parsed.wait(10'000));
  EXPECT_GE(produced.count(), 1);
}

TEST(Loader, ALiveSourceIsKnownByItsPort) {
  Opening opening("KR2", lidar::SourceKind::Live);
  (*opening.loader)();
  EXPECT_EQ(opening.root.subCategories().value(0)->key(), "KR22399");
  auto *producer = opening.functor<DefaultSDKProducer>("DefaultKRProducer");
  EXPECT_EQ(producer->defaultSDKTrackBuffer()->trackBody(), "DefaultNetTrackBody.qml");
  EXPECT_TRUE(opening.source->sourceTitle.isEmpty());
}

TEST(Loader, TheDenseCameraTypeMayFillVerticesWhileDecoding) {
  Opening opening("NBQ_COLOR_V3");
  (*opening.loader)();
  auto *parser = opening.functor<DefaultSDKParser>("DefaultKRParser");
  EXPECT_EQ(opening.source->renderBuffer, parser->defaultSDKFrameBuffer());
  ASSERT_TRUE(opening.source->tryFillVertices);
  EXPECT_FALSE(opening.source->tryFillVertices(nullptr, 0, 0));
  EXPECT_EQ(opening.source->fastPathReason, "mode");
}

TEST(Loader, TheSourceDiesWithItsSubCategory) {
  Opening opening("KR2");
  (*opening.loader)();
  ASSERT_TRUE(opening.source);
  delete opening.root.subCategories().value(0);
  EXPECT_FALSE(opening.source);
  (*opening.loader)();  // nothing in the toggle
  EXPECT_TRUE(opening.root.subCategories().isEmpty());
}

TEST(Loader, WithoutACategoryNothingIsBuilt) {
  Opening opening("KR2");
  DefaultSDKLoader orphan;
  orphan.inputSDKToggle()->sdkSource().swap(opening.loader->inputSDKToggle()->sdkSource());
  EXPECT_THROW(orphan(), std::runtime_error);
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
