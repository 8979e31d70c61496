#include "contracts/host/category.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QThread>
#include <atomic>
#include <memory>
#include <stdexcept>
#include <thread>

#include "contracts/host/registration.h"
#include "host/core/category_table.h"
#include "tests/host/fake_pipeline.h"

namespace tarvo::skarnvisor::test {
namespace {

QString named(const char *className, const char *key) {
  return QLatin1String("tarvo::skarnvisor::") + QLatin1String(className) + QLatin1String(key);
}

class CategoryTest : public testing::Test {
 protected:
  CategoryTest() { registerFakes(); }
  Category::Instance root;
};

TEST_F(CategoryTest, AnUnknownOrUnmakeableClassIsNamedInTheError) {
  QObject parent;
  for (const char *name : {"DefaultNBParser", "NoSuchClass"}) {
    try {
      delete Registration::create(named(name, ""), &parent);
      FAIL() << name << " was made";
    } catch (const std::runtime_error &error) {
      EXPECT_NE(std::string(error.what()).find(name), std::string::npos) << error.what();
    }
  }
}

TEST_F(CategoryTest, ASubCategoryHoldsItsFunctorsAndTheirBuffersByName) {
  Category::Instance *const made = root.addSubCategory(QStringLiteral("DefaultSDKCategory"), QStringLiteral("XY2368"));
  ASSERT_NE(made, nullptr);
  const QStringList functors{named("DefaultSDKNetLoader", "XY2368"), named("DefaultSDKParser", "XY2368"),
                             named("DefaultSDKProducer", "XY2368")};
  EXPECT_EQ(QStringList(made->functors().keys()), functors);
  EXPECT_NE(qobject_cast<FakeClip *>(made->buffer(functors[0] + QStringLiteral(".clip"))), nullptr);
  EXPECT_NE(qobject_cast<FakeRender *>(made->buffer(functors[1] + QStringLiteral(".frameBuffer"))), nullptr);
  EXPECT_NE(qobject_cast<TrackBuffer *>(made->buffer(functors[2] + QStringLiteral(".track"))), nullptr);
  EXPECT_EQ(made->buffers().size(), 3) << "a toggle is no buffer";
  EXPECT_EQ(qobject_cast<Category::Instance *>(made->functor(functors[0])->parent()), made);
}

TEST_F(CategoryTest, AFunctorThreadGetsObjectsThatLiveOnTheTreesThread) {
  Category::Instance *made = nullptr;
  std::atomic<bool> done{false};
  std::thread loader([&] {
    made = root.addSubCategory(QStringLiteral("DefaultSDKCategory"), QStringLiteral("XY1"));
    done = true;
  });
  while (!done) QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
  loader.join();
  ASSERT_NE(made, nullptr);
  EXPECT_EQ(made->thread(), QThread::currentThread());
  for (const auto &functor : made->functors()) EXPECT_EQ(functor->thread(), QThread::currentThread());
}

TEST_F(CategoryTest, AKeyOfTheSafetyFamilyGetsItsParserUnderTheRowsName) {
  const auto parserOf = [this](const char *key) {
    return root.addSubCategory(QStringLiteral("DefaultSDKCategory"), QLatin1String(key))
        ->functor(named("DefaultSDKParser", key));
  };
  EXPECT_NE(qobject_cast<FakeSafetyParser *>(parserOf("VDG_A12368").data()), nullptr);
  EXPECT_EQ(qobject_cast<FakeSafetyParser *>(parserOf("XVDG2368").data()), nullptr);
}

TEST_F(CategoryTest, AFailureLeavesNothingBehind) {
  EXPECT_THROW(root.addSubCategory(QStringLiteral("DefaultNBCategory"), QStringLiteral("K")), std::runtime_error);
  EXPECT_THROW(root.addSubCategory(QStringLiteral("NoCategory"), QStringLiteral("K")), std::runtime_error);
  EXPECT_TRUE(root.subCategories().isEmpty());
}

TEST_F(CategoryTest, TwoOfOneKeyStandSideBySideAndAnnounceThemselvesAtTheRoot) {
  Category::Instance *const one = root.addSubCategory(QStringLiteral("DefaultSDKCategory"), QStringLiteral("K"));
  Category::Instance *const two = root.addSubCategory(QStringLiteral("DefaultSDKCategory"), QStringLiteral("K"));
  EXPECT_NE(one->functors().first(), two->functors().first());
  int announced = 0;
  QObject::connect(&root, &Category::Instance::changed, &root, [&] { ++announced; });
  Q_EMIT two->changed();
  EXPECT_EQ(announced, 1);
  delete one;
  EXPECT_EQ(root.subCategories(), QList<Category::Instance *>{two});
}

TEST_F(CategoryTest, AFunctorThatSomebodyStillHoldsOutlivesItsCategory) {
  QSharedPointer<Functor> held;
  {
    Category::Instance other;
    held = other.addSubCategory(QStringLiteral("DefaultSDKCategory"), QStringLiteral("K"))->functors().first();
  }
  EXPECT_EQ(held->parent(), nullptr);
  held->run();  // on the shared scheduler now
}

TEST(CategoryTable, EveryFamilyHasAClipLoaderAProducerAndAParser) {
  for (const char *category : {"DefaultSDKCategory", "DefaultKRCategory", "DefaultLMCategory", "DefaultQSCategory",
                               "DefaultFMCWCategory", "DefaultNBCategory", "DefaultPcdCategory"}) {
    const CategoryPlan plan = categoryPlan(QLatin1String(category), QStringLiteral("VDG1"));
    ASSERT_EQ(plan.functors.size(), 3U) << category;
    EXPECT_TRUE(plan.functors[0].nameOf.endsWith(QLatin1String("Loader"))) << category;
    EXPECT_TRUE(plan.functors[1].nameOf.endsWith(QLatin1String("Producer"))) << category;
    EXPECT_TRUE(plan.functors[2].nameOf.endsWith(QLatin1String("Parser"))) << category;
  }
  EXPECT_EQ(clipRefreshOf(QStringLiteral("DefaultPcdCategory")), ClipRefresh::Once);
  EXPECT_EQ(clipRefreshOf(QStringLiteral("DefaultKRCategory")), ClipRefresh::Repeated);
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
