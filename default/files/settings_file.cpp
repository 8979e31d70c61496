#include "default/files/settings_file.h"

#include <QApplication>
#include <QFileDialog>
#include <QPalette>
#include <QStandardPaths>

namespace tarvo::skarnvisor {

namespace {

/// The palette's colours as a style sheet, which a dialog outside the QML scene would not follow otherwise.
QString paletteStyle() {
  const QPalette palette = QApplication::palette();
  const QString window = palette.color(QPalette::Window).name();
  const QString highlight = palette.color(QPalette::Highlight).name();
  return QStringLiteral("background-color:") + window + QStringLiteral(";selection-background-color:") + highlight +
         QStringLiteral(";alternate-background-color:") + highlight + QStringLiteral(";");
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
  dialog.setFileMode(QFileDialog::AnyFile);
  dialog.setDefaultSuffix(QStringLiteral("pcd"));
  if (!preselected.isEmpty()) dialog.selectFile(preselected);
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
  return dialog.selectedFiles().constFirst();
}

}  // namespace tarvo::skarnvisor
