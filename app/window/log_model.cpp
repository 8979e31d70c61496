#include "app/window/log_model.h"

#include <QDateTime>

namespace tarvo::skarnvisor::app {
namespace {

constexpr int lookIntervalMs = 250;
constexpr std::int64_t stillnessMicroseconds = 60'000'000;

QString levelName(LogLevel level) {
  switch (level) {
    case LogLevel::Information:
      return QStringLiteral("info");
    case LogLevel::Warning:
      return QStringLiteral("warning");
    case LogLevel::Error:
      return QStringLiteral("error");
    case LogLevel::Internal:
      return QStringLiteral("internal");
    case LogLevel::Notice:
      break;
  }
  return QStringLiteral("notice");
}

QString timeOf(const LogEntry &entry) {
  return QDateTime::fromMSecsSinceEpoch(entry.unixMicroseconds / 1000).toString(QStringLiteral("hh:mm:ss.zzz"));
}

QString messageOf(const LogEntry &entry) { return QString::fromLocal8Bit(entry.message.c_str()); }

}  // namespace

LogModel::LogModel(QObject *parent) : QAbstractListModel(parent), m_old(Logger::GetInstance().lastSequence()) {
  connect(&m_timer, &QTimer::timeout, this, &LogModel::look);
  m_timer.start(lookIntervalMs);
}

int LogModel::rowCount(const QModelIndex &parent) const { return parent.isValid() ? 0 : count(); }

QVariant LogModel::data(const QModelIndex &index, int role) const {
  if (index.row() < 0 || index.row() >= count()) return {};
  const LogEntry &entry = m_entries[static_cast<std::size_t>(index.row())];
  switch (role) {
    case Time:
      return timeOf(entry);
    case Level:
      return levelName(entry.level);
    case Source:
      return QStringLiteral("%1:%2").arg(QString::fromLocal8Bit(entry.source.c_str())).arg(entry.line);
    case Message:
      return messageOf(entry);
    default:
      return {};
  }
}

QHash<int, QByteArray> LogModel::roleNames() const {
  return {{Time, "time"}, {Level, "level"}, {Source, "source"}, {Message, "message"}};
}

void LogModel::look() {
  const Logger &log = Logger::GetInstance();
  if (log.lastSequence() == m_sequence) return;
  std::vector<LogEntry> fresh = log.entriesAfter(m_sequence);
  if (fresh.empty()) return;
  m_sequence = fresh.back().sequence;
  if (fresh.size() > capacity) fresh.erase(fresh.begin(), fresh.end() - capacity);
  const int over = count() + static_cast<int>(fresh.size()) - capacity;
  if (over > 0) {
    beginRemoveRows({}, 0, over - 1);
    m_entries.erase(m_entries.begin(), m_entries.begin() + over);
    endRemoveRows();
  }
  beginInsertRows({}, count(), count() + static_cast<int>(fresh.size()) - 1);
  m_entries.insert(m_entries.end(), fresh.begin(), fresh.end());
  endInsertRows();
  tellErrors(fresh);
  Q_EMIT countChanged();
}

void LogModel::tellErrors(const std::vector<LogEntry> &fresh) {
  bool news = false;
  for (const LogEntry &entry : fresh) {
    if (entry.sequence <= m_old || (entry.level != LogLevel::Error && entry.level != LogLevel::Internal)) continue;
    ++m_errorCount;
    std::int64_t &last = m_lastErrors[{entry.source, entry.line}];
    news = news || entry.unixMicroseconds - last > stillnessMicroseconds;
    last = entry.unixMicroseconds;
    Q_EMIT errorLogged(messageOf(entry));
  }
  if (news) Q_EMIT newsLogged();
}

void LogModel::clear() {
  beginResetModel();
  m_entries.clear();
  m_errorCount = 0;
  endResetModel();
  Q_EMIT countChanged();
}

}  // namespace tarvo::skarnvisor::app
