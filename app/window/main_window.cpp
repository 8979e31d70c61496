#include "app/window/main_window.h"

#ifdef __GLIBC__
#include <malloc.h>
#endif

#include <QAbstractTableModel>
#include <QApplication>
#include <QClipboard>
#include <QFileInfo>
#include <QImageWriter>
#include <QQmlContext>
#include <QQuickStyle>

#include "app/window/cloud_canvas.h"
#include "app/window/frame_pacer.h"
#include "app/window/manual_page.h"
#include "app/window/overlay_picture.h"
#include "app/window/theme.h"

namespace tarvo::skarnvisor::app {
namespace {

void registerTypes() {
  qmlRegisterType<CloudCanvas>("Skarnvisor", 1, 0, "CloudCanvas");
  const QString reason = QStringLiteral("one a program");
  qmlRegisterUncreatableType<Viewer>("Skarnvisor", 1, 0, "Viewer", reason);
  qmlRegisterUncreatableType<ColorScale>("Skarnvisor", 1, 0, "ColorScale", reason);
  // The tables of the buffers are properties of this type.
  qRegisterMetaType<QAbstractTableModel *>();
  qRegisterMetaType<QQuickTextDocument *>();
  qmlRegisterUncreatableType<QAbstractTableModel>("Skarnvisor", 1, 0, "AbstractTableModel", reason);
}

}  // namespace

MainWindow::MainWindow() {
#ifdef __GLIBC__
  // Blocks as large as a frame's vertices go back to the system when they are freed. Otherwise the allocator comes to
  // keep them, in pieces that the next frames do not fit: half a gigabyte beside a deep stack.
  mallopt(M_MMAP_THRESHOLD, 4 << 20);
#endif
  // Once a process, before the first controls are loaded.
  if (QQuickStyle::name().isEmpty()) QQuickStyle::setStyle(QStringLiteral("Fusion"));
  registerTypes();
  m_engine.addImageProvider(QStringLiteral("overlay"), new OverlayProvider(m_viewer));
  QQmlContext &context = *m_engine.rootContext();
  context.setContextProperty(QStringLiteral("app"), this);
  context.setContextProperty(QStringLiteral("viewer"), &m_viewer);
  context.setContextProperty(QStringLiteral("bufferCalls"), &m_viewer.bufferCalls());
  context.setContextProperty(QStringLiteral("jobs"), &m_viewer.jobs());
  context.setContextProperty(QStringLiteral("tableRows"), &m_viewer.tableRows());
  context.setContextProperty(QStringLiteral("prefs"), &m_viewer.preferences());
  context.setContextProperty(QStringLiteral("logModel"), &m_log);
  context.setContextProperty(QStringLiteral("logView"), &m_logView);
  context.setContextProperty(QStringLiteral("files"), &m_files);
  context.setContextProperty(QStringLiteral("lidarTools"), &m_tools);
  connect(&m_viewer, &Viewer::captureChanged, &m_tools, [this] { m_tools.setBuffer(m_viewer.buffer()); });
  m_engine.load(QUrl(QStringLiteral("qrc:/skarnvisor/main.qml")));
  if (!m_engine.rootObjects().isEmpty()) m_window = qobject_cast<QQuickWindow *>(m_engine.rootObjects().first());
  if (m_window == nullptr) return;
  new FramePacer(*m_window);
  m_place = std::make_unique<WindowPlace>(*m_window, m_viewer.preferences());
}

MainWindow::~MainWindow() {
  m_place.reset();
  // The items must be gone before what they bind to, and the calls under way before who waits for them.
  delete m_window;
  m_viewer.close();
}

void MainWindow::setDark(bool dark) { QApplication::setPalette(themePalette(dark)); }

QImage MainWindow::grab() {
  if (m_window == nullptr) return {};
  if (auto *canvas = m_window->findChild<CloudCanvas *>()) canvas->finishPicture();
  return m_window->grabWindow();
}

QString MainWindow::version() { return QStringLiteral(SKARNVISOR_VERSION); }

QString MainWindow::manualPage(const QString &name) { return app::manualPage(name); }

void MainWindow::fitPage(QQuickTextDocument *page, int width, const QColor &links) {
  if (page != nullptr && page->textDocument() != nullptr) app::fitPage(*page->textDocument(), width, links);
}

bool MainWindow::saveShot(const QUrl &target) {
  const QString file = target.toLocalFile();
  const bool known = QImageWriter::supportedImageFormats().contains(QFileInfo(file).suffix().toLower().toLatin1());
  return grab().save(file, known ? nullptr : "PNG");
}

void MainWindow::copyText(const QString &text) { QApplication::clipboard()->setText(text); }

}  // namespace tarvo::skarnvisor::app
