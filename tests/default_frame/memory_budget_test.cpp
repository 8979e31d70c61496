// How deep a stack a machine's memory allows, how it lies in the ring, and the arrays that it takes.
#include "default/frame/memory_budget.h"
#include "default/frame/point_store.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <limits>

namespace tarvo::skarnvisor::test {
namespace {

constexpr std::uint64_t gib = std::uint64_t{1} << 30;

TEST(MemoryBudget, ARequestTakesTheNextShape) {
  struct Case {
    int asked;
    StackShape shape;
    int slots;
  };
  for (const Case &c : {Case{2, {5, 5, 1}, 1}, Case{6, {10, 5, 2}, 2}, Case{150, {150, 5, 30}, 30},
                        Case{151, {155, 6, 30}, 26}, Case{180, {180, 6, 30}, 30}, Case{3000, {3000, 100, 30}, 30}}) {
    const StackShape shape = stackShape(stackDepth(c.asked));
    EXPECT_EQ(shape, c.shape) << c.asked;
    EXPECT_EQ(shape.slotsInUse(), c.slots) << c.asked;
  }
}

TEST(MemoryBudget, TheFirstTestNamesWhatWouldHavePassed) {
  constexpr std::size_t points = 76'000;  // 7.6 MB a frame
  const QuickTest refused = quickTest(1000, points, 5'000'000'000);
  EXPECT_FALSE(refused.passed);
  EXPECT_EQ(refused.neededBytes, 7'600'000'000U);
  EXPECT_EQ(refused.suggestedFrames, 526);
  EXPECT_TRUE(quickTest(526, points, 5'000'000'000).passed);
  EXPECT_FALSE(quickTest(527, points, 5'000'000'000).passed);
  EXPECT_EQ(quickTest(2, points, 0).suggestedFrames, 1);
  EXPECT_TRUE(quickTest(3000, 0, 0).passed) << "a lidar not known yet needs nothing";
}

TEST(MemoryBudget, TheShareGrowsWithTheMachineAndCountsWhatIsHeld) {
  EXPECT_DOUBLE_EQ(usableBytes({8 * gib - 1, 10}, 90), 70.0);
  EXPECT_DOUBLE_EQ(usableBytes({8 * gib, 10}, 90), 80.0);
  EXPECT_DOUBLE_EQ(usableBytes({16 * gib, 100}, 0), 85.0);
}

TEST(MemoryBudget, TheDeepestStackIsTheLastThatFits) {
  constexpr std::size_t points = 1000;
  constexpr double frame = 104.0 * points;
  EXPECT_EQ(deepestStack(points, 20 * frame), 20);
  EXPECT_EQ(deepestStack(points, 20 * frame - 1), 15);
  EXPECT_EQ(deepestStack(points, 0.0), 5);
  EXPECT_EQ(deepestStack(points, 179 * frame), 150) << "155 frames lie in 30 groups of 6";
  EXPECT_EQ(deepestStack(points, 180 * frame), 180);
  EXPECT_EQ(deepestStack(points, std::numeric_limits<double>::max()), 3000);
  EXPECT_EQ(deepestStack(0, std::numeric_limits<double>::max()), 5);
}

TEST(PointStore, PositionsRunThroughBlocksThatAreSwapped) {
  PointStore store(7);
  EXPECT_EQ(store.shape(3, 4), 12U);
  ASSERT_EQ(store.size(), 12U);
  for (std::size_t i = 0; i < store.size(); ++i) store[i].timeNs = static_cast<std::uint32_t>(i);
  PointStore::Block block(4);
  block[1].timeNs = 55;
  store.swapBlock(1, block);
  EXPECT_EQ(store[5].timeNs, 55U);
  EXPECT_EQ(block[3].timeNs, 7U);
  EXPECT_EQ(store.from(6).size(), 2U);
  EXPECT_TRUE(store.from(12).empty());
  EXPECT_EQ(store.shape(4, 4), 4U) << "blocks of the right size stay";
  EXPECT_EQ(store[5].timeNs, 55U);
  EXPECT_EQ(store.capacity(), 16U);
}

TEST(ZeroedVector, ALongVectorIsZeroAndTooLongAOneThrows) {
  ZeroedVector<std::uint32_t> values(3'000'000);
  EXPECT_TRUE(std::ranges::all_of(values, [](std::uint32_t value) { return value == 0; }));
  values[2'999'999] = 7;
  values.resize(9'000'000);
  EXPECT_EQ(values[2'999'999], 7U);
  EXPECT_EQ(values[8'999'999], 0U);
  EXPECT_THROW(ZeroedVector<std::uint32_t>(std::size_t{1} << 55), std::bad_alloc);
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
