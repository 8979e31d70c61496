#pragma once

#include <QAbstractListModel>
#include <QTimer>
#include <deque>
#include <map>
#include <string>
#include <utility>

#include "contracts/host/log.h"

namespace tarvo::skarnvisor::app {

/// The newest lines of the log, oldest first. Looks at the log a few times a second. GUI thread.
class LogModel : public QAbstractListModel {
  Q_OBJECT
  Q_PROPERTY(int count READ count NOTIFY countChanged)
  /// Errors since the list was made or emptied, those that have left it included.
  Q_PROPERTY(int errorCount READ errorCount NOTIFY countChanged)

 public:
  enum Role { Time = Qt::UserRole + 1, Level, Source, Message };

  explicit LogModel(QObject *parent = nullptr);

  int rowCount(const QModelIndex &parent = {}) const override;
  QVariant data(const QModelIndex &index, int role) const override;
  QHash<int, QByteArray> roleNames() const override;
  int count() const { return static_cast<int>(m_entries.size()); }
  int errorCount() const { return m_errorCount; }

  Q_INVOKABLE void clear();
  /// Takes over what was logged since the last look.
  void look();

  static constexpr int capacity = 1000;

 Q_SIGNALS:
  void countChanged();
  /// An error or a mistake of our own came in, after this object was made.
  void errorLogged(const QString &message);
  /// The same, but one that comes again and again from one place in the code counts once until it has been still for a
  /// minute: worth opening the log for.
  void newsLogged();

 private:
  void tellErrors(const std::vector<LogEntry> &fresh);

  std::deque<LogEntry> m_entries;
  std::map<std::pair<std::string, int>, std::int64_t> m_lastErrors;  ///< Unix microseconds by source and line
  int m_errorCount = 0;
  std::uint64_t m_sequence = 0;
  std::uint64_t m_old;  ///< the newest line from before there was somebody to tell
  QTimer m_timer;
};

}  // namespace tarvo::skarnvisor::app
