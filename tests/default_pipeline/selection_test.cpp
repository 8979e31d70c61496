// Selection, area cuts and the rows of the point table, as QML drives them.
#include "tests/default_pipeline/parser_fixture.h"

#include <atomic>
#include <chrono>
#include <future>
#include <mutex>
#include <numeric>
#include <thread>

#include "contracts/runtime/point_fields.h"

namespace tarvo::skarnvisor::test {
namespace {

/// Points on the x axis, and a box that is moved along it.
class SelectionTest : public ParserTest {
 protected:
  void giveRow(int count) {
    std::vector<SDKPointInfo> points;
    for (int i = 0; i < count; ++i) {
      points.push_back(point(static_cast<float>(i), 0.0F, 0.0F));
      points.back().distance = static_cast<float>((i * 7) % count);
    }
    give(std::move(points));
  }

  /// Selects the points from `first` to `last`.
  void selectFrom(int first, int last) {
    const float middle = static_cast<float>(first + last) / 2;
    const float reach = static_cast<float>(last - first) / 2 + 0.5F;
    QMatrix4x4 box;
    box.scale(1.0F / reach);
    box.translate(-middle, 0.0F, 0.0F);
    rb.setProperty("selectionMatrix", box);
  }

  bool invoke(const char *name) { return QMetaObject::invokeMethod(&rb, name, Qt::DirectConnection); }

  static std::string marksOf(const QByteArray &bytes) {
    std::string marks;
    for (int i = 0; i + 12 <= bytes.size(); i += 12) {
      std::uint32_t word = 0;
      std::memcpy(&word, bytes.constData() + i + 8, sizeof word);
      marks += word == hiddenMark ? '.' : word == highlightMark ? '#' : 'o';
    }
    return marks;
  }
  /// One letter a point: hidden ".", highlighted "#", shown "o".
  std::string marks() const { return marksOf(rb.property("vertex").toByteArray()); }

  /// First column of the table, x as text.
  std::vector<int> listed() {
    auto *const table = rb.property("spreadSheetModel").value<QAbstractTableModel *>();
    std::vector<int> rows;
    constexpr int xColumn = 7;
    for (int row = 0; row < table->rowCount(); ++row)
      rows.push_back(static_cast<int>(table->index(row, xColumn).data().toDouble()));
    return rows;
  }
  std::vector<int> listedPositions() {
    const std::lock_guard lock(rb.picture().frameMutex);
    const auto &rows = rb.picture().spreadSheetRows;
    return {rows.begin(), rows.begin() + rb.spreadSheetModel().rowCount()};
  }
};

TEST_F(SelectionTest, AreaCutsHideByPlaceInTheFrameUntilTheyAreRevoked) {
  giveRow(10);
  parse();
  struct Step {
    int first, last;  ///< the box that stands
    const char *operation;
    const char *shown;  ///< after the run that the signal starts
    unsigned flags;
    bool announced;
  };
  const char *const cut = "singleFrameSelectedAreaFiltering";
  const char *const undo = "singleFrameSelectedAreaRevokedOnce";
  const char *const reverse = "singleFrameSelectedAreaReverse";
  const char *const revoke = "singleFrameSelectedAreaRevokedAll";
  log.take();
  for (const Step &step : {Step{0, 2, undo, "oooooooooo", 2, false},  // nothing to take back
                           {0, 2, reverse, "oooooooooo", 6, true},    // nothing is cut
                           {0, 2, reverse, "oooooooooo", 2, true},
                           {0, 2, cut, "...ooooooo", 1, true},
                           {2, 5, cut, "......oooo", 1, true},
                           {2, 5, undo, "...ooooooo", 3, true},  // the overlap is in the first cut as well
                           {0, 2, undo, "...ooooooo", 3, false},
                           {8, 9, cut, "...ooooo..", 1, true},
                           {8, 9, reverse, "ooo.....oo", 5, true},
                           {4, 4, cut, "ooo.o...oo", 5, true},   // stays reversed
                           {0, 9, undo, "ooo.....oo", 7, true},  // by the box that stands now
                           {0, 9, revoke, "oooooooooo", 2, true}}) {
    selectFrom(step.first, step.last);
    log.take();
    ASSERT_TRUE(invoke(step.operation));
    EXPECT_EQ(log.take(), step.announced ? Names{"renderStateChanged"} : Names{}) << step.operation;
    parse();
    // The undo over everything takes the other cuts down as well, and a frame of hidden points keeps the picture.
    if (step.flags != 7) {
      EXPECT_EQ(marks(), step.shown) << step.operation << " " << step.first << " to " << step.last;
    }
    EXPECT_EQ(rb.picture().areaFlags, step.flags) << step.operation;
  }
}

TEST_F(SelectionTest, ACutIsTakenBackWithItsOwnBoxAndTheSelectionStays) {
  giveRow(10);
  parse();
  selectFrom(2, 4);
  const QMatrix4x4 cut = rb.selectionMatrix();
  invoke("singleFrameSelectedAreaFiltering");
  selectFrom(7, 7);
  rb.setProperty("selectEnabled", true);
  log.take();
  EXPECT_TRUE(QMetaObject::invokeMethod(&rb, "singleFrameSelectedAreaRevokedOnce", Q_ARG(QMatrix4x4, cut)));
  EXPECT_EQ(log.take(), Names{"renderStateChanged"}) << "one pass, and no other rows on the way";
  parse();
  EXPECT_EQ(marks(), "ooooooo#oo");
}

TEST_F(SelectionTest, ACellOfTheTableIsReadWhileAPassHoldsThePicture) {
  giveRow(3);
  parse();
  rb.spreadSheetModel().setAllDisplayed(true);
  invoke("refreshSelectionDisplay");
  constexpr int xColumn = 7;
  std::unique_lock pass(rb.picture().frameMutex);
  auto cell = std::async(std::launch::async, [this] { return rb.spreadSheetModel().index(2, xColumn).data(); });
  EXPECT_EQ(cell.wait_for(std::chrono::seconds(20)), std::future_status::ready);
  pass.unlock();
  EXPECT_EQ(cell.get().toDouble(), 2.0);
}

TEST_F(SelectionTest, ACutOutlivesFramesAndPointsBehindItPass) {
  giveRow(6);
  parse();
  selectFrom(0, 99);
  invoke("singleFrameSelectedAreaFiltering");
  giveRow(9);
  parse();
  EXPECT_EQ(marks(), "......ooo");
  invoke("singleFrameSelectedAreaReverse");
  parse();
  EXPECT_EQ(marks(), "oooooo...") << "the mask has grown with the frame";

  DefaultSDKParser fresh(nullptr);
  auto &empty = *fresh.defaultSDKFrameBuffer();
  SignalLog signals(empty);
  QMetaObject::invokeMethod(&empty, "singleFrameSelectedAreaFiltering");
  EXPECT_EQ(signals.take(), Names{"renderStateChanged"}) << "without a frame only the flags change";
  EXPECT_EQ(empty.picture().areaFlags, 1U);
}

TEST_F(SelectionTest, RowsComeInTheOrderThatTheTableAsksFor) {
  giveRow(10);
  parse();
  const int hidden = 4;
  rb.picture().vertices[hidden].color = hiddenMark;
  rb.spreadSheetModel().setAllDisplayed(true);
  constexpr int distance = 5;
  struct Case {
    int order;
    std::vector<int> rows;
  };
  for (const Case &c : {Case{1, {0, 3, 6, 9, 2, 5, 8, 1, 7}},
                        {-1, {7, 1, 8, 5, 2, 9, 6, 3, 0}},
                        {0, {0, 1, 2, 3, 5, 6, 7, 8, 9}},
                        {7, {0, 1, 2, 3, 5, 6, 7, 8, 9}}}) {
    rb.spreadSheetModel().setSort(distance, c.order);
    invoke("refreshSelectionDisplay");
    EXPECT_EQ(listed(), c.rows) << "order " << c.order;
  }
  selectFrom(2, 5);
  rb.spreadSheetModel().setAllDisplayed(false);
  rb.spreadSheetModel().setSort(distance, -1);
  rb.setProperty("selectEnabled", true);
  EXPECT_EQ(listed(), (std::vector<int>{5, 2, 3}));
  rb.setProperty("selectEnabled", false);
  invoke("refreshSelectionDisplay");
  EXPECT_TRUE(listed().empty()) << "neither selected nor all nor exported";
  rb.settings().detailExportType = 1;
  invoke("refreshSelectionDisplay");
  EXPECT_EQ(listed().size(), 10U);
}

TEST_F(SelectionTest, ASelectionFollowsItsPlaceFromFrameToFrame) {
  giveRow(6);
  parse();
  selectFrom(1, 2);
  rb.setProperty("spreadSheetEnabled", true);
  rb.setProperty("selectEnabled", true);
  EXPECT_EQ(marks(), "o##ooo");
  std::vector<SDKPointInfo> moved;
  for (const float x : {9.0F, 2.0F, 8.0F, 1.0F}) moved.push_back(point(x, 0.0F, 0.0F));
  give(std::move(moved));
  log.take();
  parse();
  EXPECT_EQ(log.take(), (Names{"allSignalReceived", "spreadSheetModelChanged", "someSignalReceived"}));
  EXPECT_EQ(marks(), "o#o#");
  EXPECT_EQ(listed(), (std::vector<int>{2, 1}));
  selectFrom(8, 9);
  EXPECT_EQ(marks(), "#o#o") << "who leaves the selection gets the colour back";
  rb.filterModel().setFilter(true, {}, {});
  rb.filterModel().setFilterMode(5);  // filters everything
  log.take();
  invoke("filterSinglePoints");
  EXPECT_EQ(log.take(), (Names{"vertexChanged", "allSignalReceived", "spreadSheetModelChanged"}));
  EXPECT_TRUE(listed().empty()) << "a hidden point is never listed";
}

/// The same on a stack of two canvases with three points each.
class StackSelectionTest : public SelectionTest {
 protected:
  StackSelectionTest() {
    auto &ring = rb.ring();
    ring.canvasCount = 2;
    ring.canvasBufferSize = ring.canvasPointCapacity = 3;
    ring.canvasTargets.fill(0);
    ring.canvasTargets[0] = ring.canvasTargets[1] = 1;
    {
      const std::lock_guard lock(rb.picture().frameMutex);
      rb.picture().canvases[0].assign(3, hiddenVertex);
      rb.picture().canvases[1].assign(3, hiddenVertex);
      rb.picture().frameStore.shape(2, 3);
      rb.picture().spreadSheetRows.assign(1, 0);
    }
    giveRow(3);
    parse();
    parse();
    log.take();
  }
  std::string stackMarks() const { return marksOf(rb.vertexGet(0)) + " " + marksOf(rb.vertexGet(1)); }
};

TEST_F(StackSelectionTest, EveryCanvasIsMarkedListedAndCut) {
  selectFrom(1, 2);
  rb.setProperty("selectEnabled", true);
  EXPECT_EQ(log.take(), (Names{"allSignalReceived", "spreadSheetModelChanged"}));
  EXPECT_EQ(stackMarks(), "o## o##");
  EXPECT_EQ(listedPositions(), (std::vector<int>{1, 2, 4, 5})) << "more rows than the table had";
  constexpr int xColumn = 7;
  rb.spreadSheetModel().setSort(xColumn, -1);
  invoke("refreshSelectionDisplay");
  EXPECT_EQ(listedPositions(), (std::vector<int>{2, 5, 1, 4}));

  selectFrom(2, 2);
  log.take();
  invoke("singleFrameSelectedAreaFiltering");
  EXPECT_EQ(log.take(), (Names{"allSignalReceived", "spreadSheetModelChanged", "renderStateChanged"}));
  EXPECT_EQ(stackMarks(), "oo. oo.") << "at once, without a new frame";
  invoke("singleFrameSelectedAreaRevokedOnce");
  EXPECT_EQ(stackMarks(), "oo# oo#");
  invoke("singleFrameSelectedAreaFiltering");
  invoke("singleFrameSelectedAreaReverse");
  EXPECT_EQ(stackMarks(), "..# ..#");
  invoke("singleFrameSelectedAreaRevokedAll");
  EXPECT_EQ(stackMarks(), "oo# oo#");

  rb.setProperty("selectEnabled", false);
  EXPECT_EQ(stackMarks(), "ooo ooo") << "the marks of older frames go as well";
}

TEST_F(StackSelectionTest, NothingIsTouchedWhileTheStackIsAllocated) {
  selectFrom(0, 2);
  rb.flow().frameAllocationBusy = true;
  rb.setProperty("selectEnabled", true);
  EXPECT_EQ(log.take(), Names{"spreadSheetModelChanged"});
  for (const char *operation :
       {"singleFrameSelectedAreaFiltering", "singleFrameSelectedAreaReverse", "singleFrameSelectedAreaRevokedOnce",
        "singleFrameSelectedAreaRevokedAll", "filterSinglePoints", "filterMultiPoints"})
    EXPECT_TRUE(invoke(operation)) << operation;
  EXPECT_TRUE(log.take().empty());
  EXPECT_EQ(stackMarks(), "ooo ooo");
  EXPECT_EQ(rb.picture().areaFlags, 2U);
  EXPECT_EQ(rb.spreadSheetModel().rowCount(), 0);
  rb.flow().frameAllocationBusy = false;
  invoke("refreshSelectionDisplay");
  EXPECT_EQ(stackMarks(), "### ###");
}

TEST_F(SelectionTest, AFamilysColoursReachEveryPassFromOneHook) {
  rb.hooks().colors = [](std::span<const SDKPointInfo> points, std::span<std::uint32_t> words) {
    for (std::size_t i = 0; i < points.size(); ++i) words[i] = 0x2000U + static_cast<std::uint32_t>(points[i].x);
  };
  giveRow(3);
  const auto colors = [this] {
    std::vector<std::uint32_t> words;
    for (const Vertex &vertex : vertices()) words.push_back(vertex.color);
    return words;
  };
  const std::vector<std::uint32_t> expected{0x2000U, 0x2001U, 0x2002U};
  parse();
  EXPECT_EQ(colors(), expected);
  rb.setColorMode(3);
  EXPECT_EQ(colors(), expected);
  invoke("filterSinglePoints");
  EXPECT_EQ(colors(), expected);
  selectFrom(0, 2);
  rb.setProperty("selectEnabled", true);
  EXPECT_EQ(marks(), "###");
  selectFrom(50, 60);
  EXPECT_EQ(colors(), expected);
  EXPECT_EQ(rb.attributeColor(point(7.0F, 0.0F, 0.0F)), 0x2007U);
}

// The two states each show one half; a frame tested against limits of both would show all or nothing.
TEST_F(SelectionTest, AFilterThatChangesAThousandTimesIsOneStateForEachFrame) {
  rb.disconnect();  // the log of signals belongs to one thread
  constexpr int count = 1'000'000;
  std::vector<SDKPointInfo> cloud(count, point(-1.0F, 0.0F, 0.0F));
  for (int i = 0; i < count / 2; ++i) cloud[static_cast<std::size_t>(i)].x = 1.0F;
  give(std::move(cloud));
  const auto setHalf = [this](bool positive) {
    QVariantList floats;
    for (const float limit : FilterSnapshot::floatLimitsAtStart()) floats << limit;
    floats[6] = positive ? 0.0 : -2.0;
    floats[7] = positive ? 2.0 : 0.0;
    QVariantList ints;
    for (const int limit : FilterSnapshot::intLimitsAtStart()) ints << limit;
    QMetaObject::invokeMethod(&rb.filterModel(), "setFilter", Q_ARG(bool, true), Q_ARG(QVariant, QVariant(floats)),
                              Q_ARG(QVariant, QVariant(ints)));
  };
  const auto shown = [this] {
    const auto drawn = vertices();
    return std::ranges::count_if(drawn, [](const Vertex &vertex) { return vertex.color != hiddenMark; });
  };
  setHalf(true);
  std::atomic<int> changes{0};
  std::atomic<int> mixed{0};
  std::thread pipeline([&] {
    for (int frames = 0; frames < 10 || changes < 1000; ++frames) {
      parse();
      mixed += shown() != count / 2;
    }
  });
  for (; changes < 1000; ++changes) {
    setHalf(changes % 2 == 0);
    if (changes % 100 == 0) invoke("filterSinglePoints");
    std::this_thread::yield();
  }
  pipeline.join();
  EXPECT_EQ(mixed, 0);
  EXPECT_EQ(shown(), count / 2);
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
