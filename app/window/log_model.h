#pragma once

#include <QAbstractListModel>
#include <QTimer>
#include <deque>

#include "contracts/host/log.h"

namespace tarvo::skarnvisor::app {

/// The newest lines of the log, oldest first. Looks at the log a few times a second. GUI thread.
class LogModel : public QAbstractListModel {
  Q_OBJECT
  Q_PROPERTY(int count READ count NOTIFY countChanged)

 public:
  enum Role { Time = Qt::UserRole + 1, Level, Source, Message };

  explicit LogModel(QObject *parent = nullptr);

  int rowCount(const QModelIndex &parent = {}) const override;
  QVariant data(const QModelIndex &index, int role) const override;
  QHash<int, QByteArray> roleNames() const override;
  int count() const { return static_cast<int>(m_entries.size()); }

  Q_INVOKABLE void clear();
  /// All lines as text, for the clipboard.
  Q_INVOKABLE QString text() const;
  /// Takes over what was logged since the last look.
  void look();

  static constexpr int capacity = 1000;

 Q_SIGNALS:
  void countChanged();
  /// An error or a mistake of our own came in.
  void errorLogged(const QString &message);

 private:
  std::deque<LogEntry> m_entries;
  std::uint64_t m_sequence = 0;
  QTimer m_timer;
};

}  // namespace tarvo::skarnvisor::app
