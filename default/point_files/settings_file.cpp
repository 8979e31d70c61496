#include "default/point_files/settings_file.h"

#include <QApplication>
#include <QFileDialog>
#include <QPalette>
#include <QStandardPaths>

namespace tarvo::skarnvisor {

namespace {

/// The palette's colours as a style sheet, which a dialog outside the QML scene would not follow otherwise.
QString paletteStyle() {
  const QPalette palette = QApplication::palette();
  const auto color = [&palette](QPalette::ColorRole role) { return palette.color(role).name(); };
  return QStringLiteral("QWidget { background-color: %1; color: %2; selection-background-color: %3; }")
      .arg(color(QPalette::Window), color(QPalette::WindowText), color(QPalette::Highlight));
}

}  // namespace

QString settingsFile() {
  return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation) +
         QStringLiteral("/SkarnvisorDataFiles/Settings.ini");
}

QString askForPcdFile(const QString &preselected) {
  QFileDialog dialog(nullptr, QStringLiteral("Capture a frame and dump as .pcd file"), QString(),
                     QStringLiteral("pcd files (*.pcd)"));
  dialog.setStyleSheet(paletteStyle());
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setDefaultSuffix(QStringLiteral("pcd"));
  if (!preselected.isEmpty()) dialog.selectFile(preselected);
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
  return dialog.selectedFiles().constFirst();
}

}  // namespace tarvo::skarnvisor
