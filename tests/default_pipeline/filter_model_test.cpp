// The point filter and the echo model as QML calls them.
#include "tests/default_pipeline/parser_fixture.h"

#include <QCoreApplication>
#include <QJSEngine>
#include <QMetaMethod>
#include <QSignalSpy>

#include <cmath>
#include <limits>

#include "contracts/runtime/point_fields.h"

namespace tarvo::skarnvisor::test {
namespace {

namespace fields = tarvo::lidar::fields;

template <auto Field>
void set(SDKPointInfo &point, int value) {
  Field.set(point, static_cast<typename decltype(Field)::Value>(value));
}

template <int shift>
void setConfidence(SDKPointInfo &point, int value) {
  point.confidence = static_cast<std::uint16_t>(value << shift);
}

struct SlotRow {
  FilterSlot slot;
  const char *flag;
  bool onAtStart;
  double low, high;  ///< at start
  void (*set)(SDKPointInfo &, int);
};

constexpr SlotRow slots[]{
    {FilterSlot::AzimuthCalib, "azimuthCalibFilterFlag", true, -360, 360, set<fields::azimuthCalib>},
    {FilterSlot::ElevationCalib, "elevationCalibFilterFlag", true, -360, 360, set<fields::elevationCalib>},
    {FilterSlot::Distance, "distanceFilterFlag", true, 0, 1000, set<fields::distance>},
    {FilterSlot::X, "xFilterFlag", true, -1000, 1000, set<fields::x>},
    {FilterSlot::Y, "yFilterFlag", true, -1000, 1000, set<fields::y>},
    {FilterSlot::Z, "zFilterFlag", true, -1000, 1000, set<fields::z>},
    {FilterSlot::Intensity, "intensityFilterFlag", true, 0, 255, set<fields::intensity>},
    {FilterSlot::Confidence, "confidenceFilterFlag", false, 0, 255, setConfidence<0>},
    {FilterSlot::WeightFactor, "weightFactorFilterFlag", false, 0, 255, set<fields::weightFactor>},
    {FilterSlot::AngleState, "angleStateFilterFlag", false, 0, 255, set<fields::aziState>},
    {FilterSlot::TurnIndex, "turnIndexFilterFlag", false, 0, 255, set<fields::turnIndex>},
    {FilterSlot::PointId, "pointIdFilterFlag", false, 0, 65536, set<fields::pointId>},
    {FilterSlot::Confidence0, "confidence0FilterFlag", false, 0, 1, setConfidence<0>},
    {FilterSlot::Confidence1, "confidence1FilterFlag", false, 0, 2, setConfidence<1>},
    {FilterSlot::Confidence2, "confidence2FilterFlag", false, 0, 4, setConfidence<2>},
    {FilterSlot::Confidence3, "confidence3FilterFlag", false, 0, 8, setConfidence<3>},
    {FilterSlot::Confidence4567, "confidence4567FilterFlag", false, 0, 16, setConfidence<4>},
    {FilterSlot::Confidence01234, "confidence01234FilterFlag", false, 0, 32, setConfidence<0>},
    {FilterSlot::Confidence5, "confidence5FilterFlag", false, 0, 32, setConfidence<5>},
    {FilterSlot::Confidence6, "confidence6FilterFlag", false, 0, 64, setConfidence<6>},
    {FilterSlot::Confidence7, "confidence7FilterFlag", false, 0, 128, setConfidence<7>},
    {FilterSlot::NbqVtArea, "nbqVtAreaFilterFlag", false, 0, 255, set<fields::areaAlternate>},
    {FilterSlot::NbqVtStepId, "nbqVtStepIdFilterFlag", false, 0, 1, set<fields::stepId>},
    {FilterSlot::NbqVtSpadId, "nbqVtSpadIdFilterFlag", false, 0, 1, set<fields::spadId>},
};
constexpr int floatLimits = 12;

/// A filter model that a script talks to.
class FilterModelTest : public testing::Test {
 protected:
  FilterModelTest() { engine.globalObject().setProperty("filter", engine.newQObject(&model)); }

  QJSValue run(const QString &script) {
    const QJSValue result = engine.evaluate(script);
    EXPECT_FALSE(result.isError()) << result.toString().toStdString();
    return result;
  }

  /// Leaves `slot` alone on, with limits of its own.
  void setOnly(const SlotRow &slot, double low, double high) {
    QStringList limits;
    for (const SlotRow &row : slots) {
      model.setOffered(row.slot, row.slot == slot.slot);
      limits << QString::number(&row == &slot ? low : row.low) << QString::number(&row == &slot ? high : row.high);
    }
    run(QStringLiteral("filter.setFilter(true, [%1], [%2])")
            .arg(limits.mid(0, floatLimits).join(','), limits.mid(floatLimits).join(',')));
  }

  bool filters(const SlotRow &slot, int value) {
    SDKPointInfo point{};
    slot.set(point, value);
    return model.isFiltered(point);
  }

  QObject owner;  // without a parent the model would be the script's
  FilterModel model{&owner};
  QJSEngine engine;
};

TEST_F(FilterModelTest, EachSlotHasItsFlagItsLimitsAndItsBytes) {
  int property = model.metaObject()->indexOfProperty("azimuthCalibFilterFlag");
  for (const SlotRow &slot : slots) {
    SCOPED_TRACE(slot.flag);
    EXPECT_STREQ(model.metaObject()->property(property++).name(), slot.flag) << "in the order of the slots";
    const auto index = static_cast<std::size_t>(slot.slot);
    const FilterModel fresh;
    const auto state = fresh.snapshot();
    EXPECT_EQ(fresh.property(slot.flag), QVariant(slot.onAtStart ? 1 : 0));
    constexpr std::size_t floats = FilterSnapshot::floatSlots;
    const auto limit = [&](std::size_t side) -> double {
      return index < floats ? state->floatLimits[2 * index + side] : state->intLimits[2 * (index - floats) + side];
    };
    EXPECT_EQ(limit(0), slot.low);
    EXPECT_EQ(limit(1), slot.high);
    setOnly(slot, 1, 1);
    EXPECT_EQ(run(QStringLiteral("filter.%1").arg(slot.flag)).toInt(), 1);
    EXPECT_FALSE(filters(slot, 1)) << "equal limits admit their one value";
    EXPECT_TRUE(filters(slot, 0));
    run("filter.filterMode = 1");
    EXPECT_TRUE(filters(slot, 1)) << "where any may match, equal limits admit nothing";
    run("filter.filterMode = 0");
  }
  setOnly(slots[10], 5, 7);  // the turn index shares its byte with the weight factor
  EXPECT_FALSE(filters(slots[8], 6));
  setOnly(slots[11], 0, 65536);
  EXPECT_FALSE(filters(slots[11], 65535));
}

TEST_F(FilterModelTest, ModesAndRangesDecideWhatIsFiltered) {
  const SlotRow &azimuth = slots[0];
  struct Case {
    int mode;
    double low, high;
    int value;
    bool filtered;
  };
  for (const Case &c : {Case{0, 350, 10, 355, false},
                        {0, 350, 10, 180, true},
                        {0, 350, 10, 350, false},
                        {0, 350, 10, 10, false},
                        {0, 5, 20, 5, false},
                        {0, 5, 20, 20, false},
                        {0, 5, 20, 21, true},
                        {1, 350, 10, 0, false},
                        {1, 350, 10, 11, true},
                        {1, 5, 20, 20, false},
                        {1, 5, 20, 4, true},
                        {2, 5, 20, 10, true},
                        {-1, 5, 20, 10, true}}) {
    setOnly(azimuth, c.low, c.high);
    run(QStringLiteral("filter.filterMode = %1").arg(c.mode));
    EXPECT_EQ(filters(azimuth, c.value), c.filtered)
        << "mode " << c.mode << ", " << c.low << " to " << c.high << ", value " << c.value;
  }
  run("filter.filterMode = 0");
  setOnly(azimuth, 5, 20);
  SDKPointInfo lost{};
  lost.azimuthCalib = std::numeric_limits<float>::quiet_NaN();
  EXPECT_FALSE(model.isFiltered(lost)) << "what is no number is inside where all must match";
  model.setOffered(FilterSlot::AzimuthCalib, false);
  EXPECT_FALSE(model.isFiltered({})) << "no slot filters nothing where all must match";
  run("filter.filterMode = 1");
  EXPECT_TRUE(model.isFiltered({})) << "and everything where any may";
  model.setOffered(FilterSlot::X, true);
  model.setOffered(FilterSlot::Y, true);
  SDKPointInfo oneSided{};
  oneSided.x = 0.5F;
  oneSided.y = 5000.0F;
  EXPECT_FALSE(model.isFiltered(oneSided)) << "one match is enough";
  run("filter.reset()");
  EXPECT_FALSE(model.isFiltered(oneSided)) << "switched off";
  EXPECT_EQ(model.filterMode(), 1) << "a reset leaves the mode";
}

TEST_F(FilterModelTest, WrongListsAreRefusedAndUnreadableNumbersAreZero) {
  setOnly(slots[2], 5, 6);
  const auto snapshot = model.snapshot();
  QSignalSpy enabled(&model, &FilterModel::filterEnabledChanged);
  QSignalSpy mode(&model, &FilterModel::filterModeChanged);
  const auto logged = [](const std::function<void()> &act) {
    const LogLines log;
    act();
    for (const LogEntry &entry : log.entries()) EXPECT_EQ(entry.level, LogLevel::Internal);
    return log.messages();
  };
  run("function list(n, v) { var l = []; for (var i = 0; i < n; ++i) l.push(v); return l; }");
  run("filter.reset()");
  EXPECT_EQ(logged([&] { run("filter.setFilter(true, list(11, 3), list(36, 3))"); }),
            Names{"ERROR: setFilter size mismatch (float_limits_)"});
  EXPECT_TRUE(model.filterEnabled()) << "the switch is stored before any check";
  EXPECT_EQ(model.snapshot()->floatLimits, FilterSnapshot::floatLimitsAtStart());
  EXPECT_EQ(model.snapshot()->intLimits, FilterSnapshot::intLimitsAtStart());
  EXPECT_EQ(logged([&] { run("filter.setFilter(false, list(12, 3), list(35, 3))"); }),
            Names{"ERROR: setFilter size mismatch (int_limits_)"});
  EXPECT_FALSE(model.filterEnabled());
  EXPECT_EQ(model.snapshot()->floatLimits[11], 3.0F);
  EXPECT_EQ(model.snapshot()->intLimits, FilterSnapshot::intLimitsAtStart());
  EXPECT_EQ(logged([&] { run("filter.setFilter(true, list(12, 'much'), list(36, 'much'))"); }), Names{});
  EXPECT_EQ(model.snapshot()->floatLimits[0], 0.0F);
  EXPECT_EQ(model.snapshot()->intLimits[0], 0);
  run("filter.setFilter(true, list(12, NaN), list(36, NaN))");
  EXPECT_EQ(model.snapshot()->intLimits[35], 0) << "an empty field of a panel";
  run("filter.setFilter(true, list(12, 1e9), list(36, 1e12))");
  EXPECT_EQ(model.snapshot()->intLimits[35], std::numeric_limits<int>::max());
  run("filter.filterMode = 1");
  EXPECT_EQ(enabled.count() + mode.count(), 0) << "these raise nothing";
  QSignalSpy highlight(&model, &FilterModel::highlightChanged);
  run("filter.highlight = 7; filter.setHighlight(true); filter.highlight = 0");
  EXPECT_EQ(highlight.count(), 3) << "raised at each write, changed or not";
  EXPECT_EQ(model.highlight(), 0);
}

TEST(EchoModelTest, EachReturnModeHasItsNameAndItsTitles) {
  struct Case {
    unsigned char code;
    bool firstBeforeLast;
    const char *name;
    QStringList echoes;
  };
  for (const Case &c : {Case{0, false, "0x0", {}},
                        {49, false, "0x31", {}},
                        {50, false, "secondStrongest", {}},
                        {54, false, "forth", {}},
                        {57, false, "last & strongest", {"Last", "Strongest"}},
                        {59, false, "last & first", {"Last", "First"}},
                        {59, true, "first & last", {"First", "Last"}},
                        {61, false, "first & last & strongest", {"First", "Last", "Strongest"}},
                        {62, false, "strongest & second", {"Strongest", "second"}},
                        {64, false, "#1 & #2 & #3", {"#1", "#2", "#3"}},
                        {65, false, "0x41", {}},
                        {255, true, "0xff", {}}}) {
    EchoModel model;
    QSignalSpy titles(&model, &EchoModel::echoTitlesChanged);
    model.setReturnMode(c.code);
    model.setReturnMode(c.code);
    model.setFirstBeforeLast(c.firstBeforeLast);
    EXPECT_EQ(titles.count(), c.code == 0 ? 0 : 1);
    EXPECT_EQ(model.property("echoTitles").toStringList(), QStringList("Any") + c.echoes);
    EXPECT_EQ(model.returnModeName().toStdString(), c.name);
    model.setProperty("echoDisplayMode", 2);
    EXPECT_EQ(model.property("echoDisplayMode"), QVariant(0));
  }
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
