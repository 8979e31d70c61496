#include "app/window/table_rows.h"

#include <QElapsedTimer>
#include <QStringList>
#include <QtConcurrent>
#include <cmath>

namespace tarvo::skarnvisor::app {
namespace {

constexpr int searchMs = 4;
constexpr int rowsBetweenLooks = 256;
/// A place comes from millimetres, a cell shows as many decimals.
constexpr float sameMetres = 0.0011F;

}  // namespace

TableRows::TableRows(QObject *parent) : QObject(parent) {
  connect(&m_watcher, &QFutureWatcher<void>::finished, this, [this] {
    Q_EMIT listingChanged();
    if (m_next) list(m_next);
  });
  connect(&m_turn, &QTimer::timeout, this, &TableRows::search);
}

void TableRows::list(QObject *buffer) {
  m_next = isListing() ? buffer : nullptr;
  if (buffer == nullptr || isListing()) return;
  m_watcher.setFuture(QtConcurrent::run(
      [buffer] { QMetaObject::invokeMethod(buffer, "refreshSelectionDisplay", Qt::DirectConnection); }));
  Q_EMIT listingChanged();
}

void TableRows::stop() {
  m_next = nullptr;
  m_turn.stop();
  m_watcher.waitForFinished();
}

void TableRows::find(QAbstractTableModel *table, const QVector3D &place) {
  m_turn.stop();
  if (m_table) m_table->disconnect(this);
  m_table = table;
  if (table == nullptr) return;
  const QStringList titles = table->property("columnNames").toStringList();
  m_columns = {static_cast<int>(titles.indexOf("x(m)")), static_cast<int>(titles.indexOf("y(m)")),
               static_cast<int>(titles.indexOf("z(m)"))};
  m_place = place;
  m_row = 0;
  connect(table, &QAbstractTableModel::modelReset, this, [this] { m_row = 0; });
  m_turn.start(0);
}

bool TableRows::isAt(int row) const {
  for (int i = 0; i < 3; ++i) {
    const int column = m_columns[static_cast<std::size_t>(i)];
    if (column < 0 || std::abs(m_table->index(row, column).data().toFloat() - m_place[i]) > sameMetres) return false;
  }
  return true;
}

void TableRows::search() {
  QElapsedTimer clock;
  clock.start();
  while (m_table && m_row < m_table->rowCount()) {
    if (isAt(m_row)) {
      m_turn.stop();
      return Q_EMIT found(m_row);
    }
    if (++m_row % rowsBetweenLooks == 0 && clock.elapsed() >= searchMs) return;
  }
  m_turn.stop();
}

}  // namespace tarvo::skarnvisor::app
