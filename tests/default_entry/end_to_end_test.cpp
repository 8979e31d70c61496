// A capture of the simulator, opened by the host through the plug-in library, as the program does it.
#include <gtest/gtest.h>

#include <QMetaProperty>
#include <QSignalSpy>

#include "host/core/host_core.h"
#include "tests/support/test_environment.h"
#include "tests/support/wait_for.h"
#include "tools/sim/simulator.h"

namespace tarvo::skarnvisor::test {
namespace {

QString writeCapture(const std::string &type, unsigned frames) {
  lidar::sim::Options options;
  options.type = type;
  options.channels = 16;
  options.columns = 180;
  options.frames = frames;
  options.out = (processFolder() + "/" + QString::fromStdString(type) + ".pcap").toStdString();
  lidar::sim::run(options);
  return QString::fromStdString(options.out);
}

TEST(EndToEnd, ACaptureBecomesAPicture) {
  struct Case {
    const char *type, *toolBox;
  };
  HostCore host;
  QString error;
  ASSERT_TRUE(host.loadPlugin(SKARNVISOR_PLUGIN, &error)) << error.toStdString();
  for (const Case &c : {Case{"KR2", "KRToolBox.qml"}, Case{"FMCW", "FMCWToolBox.qml"}, Case{"XT32", ""}}) {
    SCOPED_TRACE(c.type);
    QSignalSpy opened(&host, &HostCore::opened);
    QSignalSpy failed(&host, &HostCore::openFailed);
    host.openCapture(writeCapture(c.type, 6));
    ASSERT_TRUE(waitFor([&] { return opened.count() + failed.count() > 0; }));
    ASSERT_EQ(failed.count(), 0) << failed.value(0).value(0).toString().toStdString();
    Pipeline *pipeline = host.pipelines().constFirst();
    QObject *picture = pipeline->renderBufferObject();
    ASSERT_NE(picture, nullptr);
    EXPECT_EQ(picture->property("toolBoxSource").toString(), c.toolBox);
    EXPECT_EQ(pipeline->trackObject()->property("lidarName").toString(), c.type);
    EXPECT_TRUE(waitFor([&] { return pipeline->clipObject()->property("frameCount").toInt() == 6; }));
    ASSERT_TRUE(waitFor([&] { return picture->property("primitiveCount").toInt() > 0; }));
    const int points = picture->property("primitiveCount").toInt();
    EXPECT_EQ(picture->property("vertex").toByteArray().size(), points * 12);
    EXPECT_GT(points, 16 * 180 / 4);
    host.closePipeline(pipeline);
    EXPECT_TRUE(waitFor([&] { return host.pipelines().isEmpty(); }));
  }
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
