#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QImage>
#include <QLineEdit>
#include <QMimeData>
#include <QPointer>
#include <QProcess>
#include <QQuickItem>
#include <QTest>
#include <functional>
#include <memory>

#include "app/window/cloud_canvas.h"
#include "app/window/main_window.h"
#include "tests/window/complaints.h"

namespace tarvo::skarnvisor::test {

/// The real window on a display of its own, driven with keys and the mouse. Every wait has a deadline.
class WindowTest : public testing::Test {
 protected:
  static constexpr int deadlineMs = 60000;
  static constexpr int frames = 30;

  /// A capture of a street, made once a process.
  static QString capture() {
    static const QString path = [] {
      const QString target = QDir::currentPath() + QStringLiteral("/Straße 街.pcap");
      QProcess::execute(QStringLiteral(SKARNVISOR_SIM),
                        {"--channels", "32", "--columns", "600", "--frames", QString::number(frames), "--echoes", "2",
                         "--telemetry", "--faults", "--out", target});
      return target;
    }();
    return path;
  }

  void SetUp() override { start(); }

  void TearDown() override {
    if (HasFailure() && m_main) {
      const QString file = QString::fromLatin1(testing::UnitTest::GetInstance()->current_test_info()->name()) + ".png";
      const QString kept = QDir::tempPath() + QStringLiteral("/skarnvisor-window-") + file;
      m_main->grab().save(kept);
      std::printf("the window as it was: %s\n", qPrintable(kept));
    }
    m_main.reset();
    EXPECT_EQ(takeComplaints().toStdString(), "");
  }

  void start(const QString &plugin = QStringLiteral(SKARNVISOR_PLUGIN)) {
    m_main.reset();
    m_main = std::make_unique<app::MainWindow>();
    ASSERT_NE(m_main->window(), nullptr);
    m_main->window()->requestActivate();
    // Keys go to the active window alone.
    ASSERT_TRUE(QTest::qWaitForWindowActive(m_main->window(), deadlineMs));
    viewer().start(plugin);
  }

  void open() {
    const QPointer<QObject> before = viewer().buffer();
    viewer().open(capture());
    ASSERT_TRUE(eventually([&] {
      return (before.isNull() || viewer().buffer() != before) && viewer().pointsShown() > 0 && !viewer().isIndexing() &&
             lastFrame() > 0;
    })) << viewer().error().toStdString();
    // The index may tell of its last frames a moment later.
    ASSERT_TRUE(eventually([this] { return lastFrame() == frames - 1; })) << lastFrame();
  }

  app::Viewer &viewer() { return m_main->viewer(); }
  QQuickWindow *window() { return m_main->window(); }
  /// The canvas with the picture of the present scene on it: what is clicked and measured is what is seen.
  app::CloudCanvas &canvas() {
    auto &canvas = *qobject_cast<app::CloudCanvas *>(item("canvas"));
    canvas.finishPicture();
    return canvas;
  }
  QVariant root(const char *property) { return window()->property(property); }
  Timeline &timeline() { return *static_cast<Timeline *>(viewer().timeline()); }
  int lastFrame() { return timeline().frameCount() - 1; }

  static bool eventually(const std::function<bool()> &condition) { return QTest::qWaitFor(condition, deadlineMs); }
  /// True once all that was asked of the background so far has been done, and has arrived.
  bool settled() {
    viewer().bufferCalls().run([] {});
    return eventually([this] { return !viewer().bufferCalls().isRunning(); });
  }

  /// The visible item of that object name; null where there is none.
  QQuickItem *item(const QString &name) {
    return find(window()->contentItem(), [&](const QQuickItem &each) { return each.objectName() == name; });
  }
  /// The visible button, check box, or entry of a menu or a box, that says this.
  QQuickItem *saying(const QString &text) {
    return find(window()->contentItem(), [&](const QQuickItem &each) {
      return each.inherits("QQuickAbstractButton") && each.property("text").toString() == text;
    });
  }
  QString textOf(const QString &name) { return item(name) ? item(name)->property("text").toString() : QString(); }

  void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(window(), static_cast<Qt::Key>(key), modifiers);
  }

  void click(const QString &name) {
    clickOn([this, name] { return item(name); }, name);
  }
  void clickText(const QString &text) {
    clickOn([this, text] { return saying(text); }, text);
  }
  /// Opens a box and clicks the entry.
  void choose(const QString &box, const QString &entry) {
    ASSERT_NO_FATAL_FAILURE(click(box));
    clickText(entry);
  }

  /// Replaces what stands in a field and enters it.
  void type(const QString &name, const QString &text) {
    ASSERT_NO_FATAL_FAILURE(click(name));
    ASSERT_TRUE(eventually([&] { return item(name)->hasActiveFocus(); }));
    press(Qt::Key_A, Qt::ControlModifier);
    for (const QChar character : text) QTest::keyClick(window(), character.toLatin1());
    press(Qt::Key_Return);
  }

  /// Pastes a path over the name that the file dialog of the program offers, and takes it.
  void answerDialog(const QString &path, const QString &offered = {}) {
    QPointer<QFileDialog> dialog;
    ASSERT_TRUE(eventually([&] {
      for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (widget->isVisible() && dialog == nullptr) dialog = qobject_cast<QFileDialog *>(widget);
      }
      return dialog != nullptr;
    }));
    auto *name = dialog->findChild<QLineEdit *>();
    EXPECT_TRUE(offered.isNull() || eventually([&] { return name->text() == offered; })) << name->text().toStdString();
    name->selectAll();
    QApplication::clipboard()->setText(path);
    QTest::keyClick(name, Qt::Key_V, Qt::ControlModifier);
    QTest::keyClick(name, Qt::Key_Return);
    EXPECT_TRUE(eventually([&] { return dialog == nullptr || !dialog->isVisible(); }));
    // A window manager would give the keyboard back.
    window()->requestActivate();
    EXPECT_TRUE(QTest::qWaitForWindowActive(window(), deadlineMs));
  }

  void dropOnCanvas(const QString &path) {
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(path)});
    const QPoint at = canvas().mapToScene({200, 200}).toPoint();
    QDragEnterEvent enter(at, Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(window(), &enter);
    QDragMoveEvent move(at, Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(window(), &move);
    QDropEvent drop(at, Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(window(), &drop);
  }

  void drag(QPointF from, QPointF to) {
    const auto at = [this](QPointF place) { return canvas().mapToScene(place).toPoint(); };
    QTest::mousePress(window(), Qt::LeftButton, {}, at(from));
    QTest::mouseMove(window(), at((from + to) / 2));
    QTest::mouseMove(window(), at(to));
    QTest::mouseRelease(window(), Qt::LeftButton, {}, at(to));
  }

  /// Shown points for which the condition holds.
  int count(const std::function<bool(const app::VertexPoint &)> &condition) {
    int points = 0;
    viewer().cloud().forEachShown(1, [&](const app::VertexPoint &point) { points += condition(point) ? 1 : 0; });
    return points;
  }

  /// The canvas as it is drawn now.
  QImage picture() {
    const QPointF corner = canvas().mapToScene({0, 0});
    const QImage all = m_main->grab();
    return all.copy(QRect(corner.toPoint(), QSizeF(canvas().width(), canvas().height()).toSize()));
  }

  std::unique_ptr<app::MainWindow> m_main;

 private:
  using Condition = std::function<bool(const QQuickItem &)>;

  static QQuickItem *find(QQuickItem *from, const Condition &condition) {
    if (!from->isVisible()) return nullptr;
    if (condition(*from)) return from;
    const QList<QQuickItem *> children = from->childItems();
    for (QQuickItem *child : children) {
      if (QQuickItem *found = find(child, condition)) return found;
    }
    return nullptr;
  }

  void clickOn(const std::function<QQuickItem *()> &target, const QString &name) {
    ASSERT_TRUE(eventually([&] { return target() != nullptr; })) << name.toStdString();
    // Items that were opened or moved take their places when the window is drawn.
    window()->grabWindow();
    const QQuickItem *found = target();
    const QPointF middle = found->mapToScene({found->width() / 2, found->height() / 2});
    QTest::mouseClick(window(), Qt::LeftButton, {}, middle.toPoint());
  }
};

}  // namespace tarvo::skarnvisor::test
