#include "app/window/window.h"

#include <QApplication>
#include <QPalette>
#include <QQmlApplicationEngine>
#include <QQmlContext>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QTimer>
#include <cstdio>
#include <memory>

#include "app/window/cloud_canvas.h"
#include "app/window/viewer.h"
#include "app/window/window_shot.h"

namespace tarvo::skarnvisor::app {
namespace {

QPalette darkPalette() {
  QPalette palette;
  const QColor text(0xd6, 0xdc, 0xe2);
  palette.setColor(QPalette::Window, QColor(0x1b, 0x20, 0x26));
  palette.setColor(QPalette::WindowText, text);
  palette.setColor(QPalette::Base, QColor(0x14, 0x18, 0x1d));
  palette.setColor(QPalette::AlternateBase, QColor(0x20, 0x26, 0x2d));
  palette.setColor(QPalette::Text, text);
  palette.setColor(QPalette::Button, QColor(0x2a, 0x31, 0x39));
  palette.setColor(QPalette::ButtonText, text);
  palette.setColor(QPalette::BrightText, Qt::white);
  palette.setColor(QPalette::Light, QColor(0x3a, 0x43, 0x4d));
  palette.setColor(QPalette::Mid, QColor(0x3a, 0x43, 0x4d));
  palette.setColor(QPalette::Dark, QColor(0x10, 0x13, 0x17));
  palette.setColor(QPalette::ToolTipBase, QColor(0x2a, 0x31, 0x39));
  palette.setColor(QPalette::ToolTipText, text);
  palette.setColor(QPalette::Highlight, QColor(0x3d, 0x8b, 0xd9));
  palette.setColor(QPalette::HighlightedText, Qt::white);
  for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
    palette.setColor(QPalette::Disabled, role, QColor(0x6a, 0x73, 0x7c));
  return palette;
}

}  // namespace

int runWindow(const WindowOptions &options) {
  QQuickStyle::setStyle(QStringLiteral("Fusion"));
  QApplication::setPalette(darkPalette());
  qmlRegisterType<CloudCanvas>("Skarnvisor", 1, 0, "CloudCanvas");
  qmlRegisterUncreatableType<Viewer>("Skarnvisor", 1, 0, "Viewer", QStringLiteral("one a program"));

  Viewer viewer;
  QQmlApplicationEngine engine;
  engine.rootContext()->setContextProperty(QStringLiteral("viewer"), &viewer);
  engine.load(QUrl(QStringLiteral("qrc:/skarnvisor/main.qml")));
  if (engine.rootObjects().isEmpty()) {
    std::fputs("skarnvisor: the window could not be made\n", stderr);
    return 1;
  }
  std::unique_ptr<WindowShot> shot;
  if (auto *root = qobject_cast<QQuickWindow *>(engine.rootObjects().first()); root && !options.shotFile.isEmpty())
    shot = std::make_unique<WindowShot>(viewer, *root, options.shotFile);
  QTimer::singleShot(0, &viewer, [&viewer, &options] {
    viewer.start(options.pluginPath);
    if (!options.capture.isEmpty() && viewer.error().isEmpty()) viewer.open(options.capture);
  });
  return QApplication::exec();
}

}  // namespace tarvo::skarnvisor::app
