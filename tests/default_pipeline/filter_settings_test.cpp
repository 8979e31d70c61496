// Settings of the decoder's filters, as the panels call them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QMetaMethod>
#include <QSignalSpy>
#include <sstream>

#include "contracts/runtime/sdk_source.h"
#include "default/pipeline/default_sdk_frame_render_buffer.h"
#include "tests/support/inert_runtime.h"

namespace tarvo::skarnvisor::test {
namespace {

/// Writes down each setting as it comes.
class NotingRuntime : public tarvo::test::InertRuntime {
 public:
  void SetPopoutFilterFlag(bool on) override { note("popout", on); }
  void SetPopoutFilterHighlight(bool on) override { note("highlight", on); }
  void SetPopoutFilterConfig(int window, float a, float b, float c) override { note("popout config", window, a, b, c); }
  void SetOfflineFilterFlag(bool on) override { note("offline", on); }
  void SetVd8OfflineFilterFlag(bool on) override { note("offline 2", on); }
  void SetPointCloudSmoothingFlag(bool on) override { note("smoothing", smoothing = on); }
  bool GetPointCloudSmoothingFlag() const override { return smoothing; }
  void SetPointCloudSmoothingConfig(const SmoothingConfig &c, float last) override {
    note("smoothing config", c.enabled, c.floats0[0], c.floats0[6], c.int7, c.floats8[0], c.floats8[2], c.ints11[0],
         c.ints11[1], last);
  }
  void SetYfnNoiseFilterFlag(bool on) override { note("noise", on); }
  void SetYfnNoiseFilterMode(int mode) override { note("noise mode", mode); }
  void SetYfnNoiseFilterParams(float a, float b, int c) override { note("noise params", a, b, c); }

  std::string calls;
  bool smoothing = false;

 private:
  template <typename... Values>
  void note(const char *what, const Values &...values) {
    std::ostringstream text;
    text << what;
    ((text << ' ' << values), ...);
    calls += text.str() + '\n';
  }
};

class FilterSettings : public testing::Test {
 protected:
  FilterSettings() {
    source.runtime = runtime;
    buffer.setSource(&source);
  }
  /// What a call through the meta-object makes of the runtime, with the runs that it asks for.
  template <typename Value>
  std::string call(const char *name, const char *type, const Value &value) {
    runtime->calls.clear();
    const int before = runs.count();
    EXPECT_TRUE(QMetaObject::invokeMethod(&buffer, name, QGenericArgument(type, &value))) << name;
    return runtime->calls + std::to_string(runs.count() - before);
  }

  NotingRuntime *runtime = new NotingRuntime;  ///< owned by the source
  SDKSource source;
  DefaultSDKFrameRenderBuffer buffer;
  QSignalSpy runs{&buffer, &DefaultSDKFrameRenderBuffer::renderStateChanged};
};

TEST_F(FilterSettings, EachGoesToTheRuntimeAndAsksForARun) {
  EXPECT_EQ(call("setVd8PopoutFilterFlag", "bool", false), "popout 0\n1");
  EXPECT_EQ(runtime->frame.popoutRefresh, 0);
  EXPECT_EQ(call("setVd8PopoutFilterFlag", "bool", true), "popout 1\n1");
  EXPECT_EQ(runtime->frame.popoutRefresh, 1);
  runtime->frame.popoutRefresh = 0;
  EXPECT_EQ(call("setVd2OfflineFilterFlag", "bool", true), "offline 1\n1");
  EXPECT_EQ(runtime->frame.popoutRefresh, 1);
  EXPECT_EQ(call("setVd8PopoutFilterHighlight", "bool", true), "highlight 1\n1");
  EXPECT_TRUE(buffer.settings().vd8PopoutHighlight);
  EXPECT_EQ(call("setVd8OffineFilterFlag", "bool", true), "offline 2 1\n1");
  EXPECT_EQ(call("setYfnNoiseFilterFlag", "bool", true), "noise 1\n1");
  EXPECT_EQ(call("setYfnNoiseFilterMode", "int", 2), "noise mode 2\n1");
  EXPECT_EQ(call("setVd2DistanceFilterThreshold", "float", 1.5F), "1");
  EXPECT_EQ(runtime->params.snapshot().vd2DistanceThreshold, 1.5F);
  EXPECT_EQ(call("setElevationFovFilterFlag", "bool", true), "0");
  EXPECT_TRUE(runtime->params.snapshot().elevationFovFilter);
}

TEST_F(FilterSettings, ListsAreReadByPositionAndRefusedWhenShort) {
  QVariantList list{3, 0.5, 0.25, 100.0, 5, 6, 7.5, 8, 9, 10, 11.5, 12, 13, 14.5};
  EXPECT_EQ(call("setPopoutFilterConfig", "QVariantList", list), "popout config 3 0.5 0.25 100\n1");
  EXPECT_EQ(call("setYfnNoiseFilterConfig", "QVariantList", QVariantList({0.5, 0.25, 3})),
            "noise params 0.5 0.25 3\n1");
  call("setPointCloudSmoothingFlag", "bool", true);
  EXPECT_EQ(call("setPointCloutSmoothingConfig", "QVariantList", list),
            "smoothing config 1 3 7.5 8 9 11.5 12 13 14.5\n1");
  list.removeLast();
  EXPECT_EQ(call("setPointCloutSmoothingConfig", "QVariantList", list), "0");
  EXPECT_EQ(call("setPopoutFilterConfig", "QVariantList", list.mid(0, 3)), "0");
  EXPECT_EQ(call("setYfnNoiseFilterConfig", "QVariantList", QVariantList()), "0");
  EXPECT_EQ(call("setYfnNoiseFilterConfig", "QVariantList", QVariantList({"word", 0.25, 3})),
            "noise params 0 0.25 3\n1");
}

/// A value of the same kind that differs from `now`, element by element.
QVariant another(const QVariant &now) {
  if (now.type() == QVariant::Bool) return !now.toBool();
  if (now.type() != QVariant::List) return now.toInt() + 1;
  QVariantList list;
  for (const QVariant &value : now.toList()) list << another(value);
  return list;
}

TEST_F(FilterSettings, WhatEachSetterWasGivenIsToldByItsName) {
  const QVariantMap start = buffer.toolSettings();
  EXPECT_EQ(start["setPointCloudSmoothingFlag"], false);
  EXPECT_EQ(start["setBlindChannelsCheck"], true);
  EXPECT_EQ(start["setYfnNoiseFilterConfig"], QVariant(QVariantList({0.5, 0.01, 2})));
  buffer.toggleDirtry(2, false);
  EXPECT_EQ(buffer.toolSettings()["toggleDirtry"], QVariant(QVariantList({2})));
  for (auto setting = start.cbegin(); setting != start.cend(); ++setting) {
    if (setting.key() == "toggleDirtry") continue;
    const QVariant wanted = another(*setting);
    const QMetaObject &meta = *buffer.metaObject();
    bool called = false;
    for (int i = 0; i < meta.methodCount() && !called; ++i) {
      const QMetaMethod method = meta.method(i);
      if (method.name() != setting.key().toLatin1() || method.parameterCount() != 1) continue;
      QVariant argument = wanted;
      ASSERT_TRUE(argument.convert(method.parameterType(0))) << setting.key().toStdString();
      called = method.invoke(&buffer, QGenericArgument(method.parameterTypes()[0], argument.constData()));
    }
    EXPECT_TRUE(called) << setting.key().toStdString();
    EXPECT_EQ(buffer.toolSettings()[setting.key()], wanted) << setting.key().toStdString();
  }
}

TEST_F(FilterSettings, WithoutARuntimeTheyOnlyAskForARun) {
  buffer.setSource(nullptr);
  EXPECT_EQ(call("setVd8PopoutFilterFlag", "bool", true), "1");
  EXPECT_EQ(call("setVd2DistanceFilterThreshold", "float", 1.5F), "1");
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
