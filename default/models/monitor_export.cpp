#include "default/models/specific_table_model.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTextStream>

namespace tarvo::skarnvisor {

namespace {

void writeTable(QIODevice &target, const MonitorModel &model) {
  QTextStream out(&target);
  const QStringList titles = model.columnNames();
  for (const QString &title : titles) out << title << QLatin1Char(',');
  out << QLatin1Char('\n');
  const int rows = model.rowCount();
  const int columns = model.columnCount();
  for (int row = 0; row < rows; ++row) {
    for (int column = 0; column < columns; ++column)
      out << model.data(model.index(row, column)).toString() << QLatin1Char(',');
    out << QLatin1Char('\n');
  }
}

}  // namespace

bool MonitorModel::exportMonitorInfo(QUrl fileUrl) { return exportMonitorInfo(fileUrl.toLocalFile()); }

bool MonitorModel::exportMonitorInfo(QString filePath) {
  constexpr auto mode = QIODevice::WriteOnly | QIODevice::Text;
  const QFileInfo target(filePath);
  if (target.exists() && !target.isFile()) {  // a pipe or a device takes the text, but no other file in its place
    QFile file(filePath);
    if (!file.open(mode)) return false;
    writeTable(file, *this);
    return file.flush() && file.error() == QFileDevice::NoError;
  }
  QSaveFile file(filePath);
  file.setDirectWriteFallback(true);
  if (!file.open(mode)) return false;
  writeTable(file, *this);
  // A commit does not notice when the last buffer finds no room; a flush of its own does.
  if (!file.flush()) file.cancelWriting();
  return file.commit();
}

}  // namespace tarvo::skarnvisor
