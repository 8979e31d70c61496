#include "app/window/log_view.h"

#include <QSaveFile>

namespace tarvo::skarnvisor::app {
namespace {

int severityOf(const QString &level) {
  if (level == QLatin1String("error") || level == QLatin1String("internal")) return 2;
  return level == QLatin1String("warning") ? 1 : 0;
}

}  // namespace

LogView::LogView(LogModel &log, QObject *parent) : QSortFilterProxyModel(parent) {
  setSourceModel(&log);
  for (const auto signal : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved})
    connect(this, signal, this, &LogView::countChanged);
  connect(this, &QAbstractItemModel::modelReset, this, &LogView::countChanged);
}

void LogView::setSeverity(int severity) {
  if (severity == m_severity) return;
  m_severity = severity;
  invalidateFilter();
  Q_EMIT wantChanged();
}

void LogView::setSearch(const QString &search) {
  if (search == m_search) return;
  m_search = search;
  invalidateFilter();
  Q_EMIT wantChanged();
}

bool LogView::filterAcceptsRow(int row, const QModelIndex &parent) const {
  const QModelIndex line = sourceModel()->index(row, 0, parent);
  return severityOf(line.data(LogModel::Level).toString()) >= m_severity &&
         (m_search.isEmpty() || line.data(LogModel::Message).toString().contains(m_search, Qt::CaseInsensitive));
}

QString LogView::text() const {
  QString text;
  for (int row = 0; row < rowCount(); ++row) {
    const QModelIndex line = index(row, 0);
    const auto part = [&line](int role) { return line.data(role).toString(); };
    text += QStringLiteral("%1 %2 %3 (%4)\n")
                .arg(part(LogModel::Time), part(LogModel::Level), part(LogModel::Message), part(LogModel::Source));
  }
  return text;
}

bool LogView::save(const QUrl &target) const {
  QSaveFile file(target.toLocalFile());
  if (!file.open(QIODevice::WriteOnly | QIODevice::Text)) return false;
  const QByteArray bytes = text().toUtf8();
  // A commit alone does not notice that the last buffer found no room.
  return file.write(bytes) == bytes.size() && file.flush() && file.commit();
}

}  // namespace tarvo::skarnvisor::app
