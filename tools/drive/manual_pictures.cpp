// The pictures of the manual, taken from the running program.
#include <algorithm>

#include "tests/window/window_fixture.h"
#include "tools/drive/options.h"

namespace tarvo::skarnvisor::test {
namespace {

class ManualPictures : public WindowTest {
 protected:
  void SetUp() override {
    QProcess::execute(QStringLiteral(SKARNVISOR_SIM), {"--type", "WG9", "--channels", "64", "--columns", "1200",
                                                       "--frames", "30", "--telemetry", "--out", "street.pcap"});
    QProcess::execute(QStringLiteral(SKARNVISOR_SIM),
                      {"--type", "VD2", "--columns", "1200", "--frames", "30", "--out", "tools.pcap"});
  }

  void show(const QStringList &panels, const QString &file = "street.pcap") {
    for (const char *panel : {"colors", "filter", "echoes", "channels", "monitor", "faults", "calibration", "export",
                              "tools", "modes", "log"})
      setting(QString("panels/") + panel, panels.contains(panel));
    start();
    viewer().open(file);
    ASSERT_TRUE(eventually([this] { return viewer().pointsShown() > 0 && lastFrame() == 29; }));
  }

  static void setting(const QString &key, const QVariant &value) { app::Preferences().setValue(key, value); }

  /// The picture in 256 colours at most, which keeps the file small: the most frequent ones that differ to the eye, so
  /// that a ramp keeps both its ends.
  static QImage inFewColours(const QImage &picture) {
    QHash<QRgb, int> counts;
    for (int y = 0; y < picture.height(); ++y)
      for (int x = 0; x < picture.width(); ++x) ++counts[picture.pixel(x, y) & 0xfffcfcfcU];
    QVector<QRgb> frequent = counts.keys().toVector();
    std::sort(frequent.begin(), frequent.end(), [&](QRgb a, QRgb b) { return counts[a] > counts[b]; });
    QVector<QRgb> colors;
    for (const QRgb color : qAsConst(frequent)) {
      if (colors.size() == 256) break;
      const bool known = std::any_of(colors.cbegin(), colors.cend(), [&](QRgb kept) {
        return std::max({std::abs(qRed(kept) - qRed(color)), std::abs(qGreen(kept) - qGreen(color)),
                         std::abs(qBlue(kept) - qBlue(color))}) < 24;
      });
      // Surfaces differ by little and are large.
      if (!known || counts[color] > 1500) colors.append(color);
    }
    return picture.convertToFormat(QImage::Format_Indexed8, colors, Qt::ThresholdDither);
  }

  /// Saves the window, smaller than it is.
  void save(const QString &name) {
    // What follows the last change by a turn or two: tool tips aside, the tables and labels.
    QTest::qWait(400);
    const QImage shot = m_main->grab().scaledToWidth(880, Qt::SmoothTransformation);
    EXPECT_TRUE(inFewColours(shot).save(drive::options().pictureFolder + "/" + name + ".png", "PNG", 0));
  }
};

TEST_F(ManualPictures, AreTakenFromTheRunningProgram) {
  ASSERT_NO_FATAL_FAILURE(show({"colors"}));
  timeline().seekFrame(8);
  save("window");

  ASSERT_NO_FATAL_FAILURE(show({"filter", "channels"}));
  type("distanceFilterFlag-high", "25");
  save("filter");

  ASSERT_NO_FATAL_FAILURE(show({"colors"}));
  press(Qt::Key_S);
  drag({canvas().width() * 0.45, canvas().height() * 0.3}, {canvas().width() * 0.7, canvas().height() * 0.55});
  ASSERT_TRUE(eventually([this] { return viewer().pointsSelected() > 0; }));
  click("listSelected");
  save("selection");
  press(Qt::Key_F10);

  setting("table", false);
  ASSERT_NO_FATAL_FAILURE(show({"monitor"}));
  timeline().stepFrames(3);
  viewer().setSplitView(true);
  viewer().sideColors()->setMode(static_cast<int>(viewer().colorTitles().indexOf("distance")));
  save("two-views");
  viewer().setSplitView(false);

  ASSERT_NO_FATAL_FAILURE(show({"tools"}, "tools.pcap"));
  click("tool-popout");
  save("tools");
  ASSERT_NO_FATAL_FAILURE(show({"calibration", "export"}, "tools.pcap"));
  save("calibration");

  QProcess lidar;
  // Of a type whose corrections stand since the capture above.
  lidar.start(SKARNVISOR_SIM, {"--type", "VD2", "--columns", "900", "--seconds", "0", "--stream", "127.0.0.1:23698"});
  viewer().open("udp://127.0.0.1:23698");
  EXPECT_TRUE(eventually([this] { return viewer().isLive() && viewer().pointsShown() > 0; }));
  // The rate of its frames is told after a second or two.
  QTest::qWait(3000);
  save("live");
  viewer().close();
  lidar.kill();
  lidar.waitForFinished();

  setting("dark", false);
  ASSERT_NO_FATAL_FAILURE(show({"colors", "export"}));
  press(Qt::Key_F1);
  save("keys");
  setting("dark", true);
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
