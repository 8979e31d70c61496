#include "app/window/preferences.h"

#include <QFileInfo>
#include <QStandardPaths>

#include "app/session/live_address.h"

namespace tarvo::skarnvisor::app {
namespace {

constexpr int recentLimit = 12;
const QString recentKey = QStringLiteral("Viewer/recent");
const QString lastPcdKey = QStringLiteral("LastSavePcdFilePath");

QString settingsFile() {
  return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation) +
         QStringLiteral("/SkarnvisorDataFiles/Settings.ini");
}

}  // namespace

// With no codec of its own: the plug-in writes to the same file, and would read back other letters.
Preferences::Preferences(QObject *parent) : QObject(parent), m_settings(settingsFile(), QSettings::IniFormat) {}

QVariant Preferences::value(const QString &key, const QVariant &fallback) const {
  QVariant found = m_settings.value(QStringLiteral("Viewer/") + key, fallback);
  // The file holds text alone, and QML hands over a number like 2.0 as an integer.
  const QVariant::Type type = fallback.type() == QVariant::Int ? QVariant::Double : fallback.type();
  return found.convert(static_cast<int>(type)) ? found : fallback;
}

void Preferences::setValue(const QString &key, const QVariant &value) {
  // A value that stays would have the file written all the same.
  if (m_settings.value(QStringLiteral("Viewer/") + key) != value)
    m_settings.setValue(QStringLiteral("Viewer/") + key, value);
}

QUrl Preferences::lastPcdFolder() const {
  const QString file = m_settings.value(lastPcdKey).toString();
  return file.isEmpty() ? QUrl() : QUrl::fromLocalFile(QFileInfo(file).absolutePath());
}

void Preferences::notePcdFile(const QUrl &file) {
  m_settings.setValue(lastPcdKey, file.toLocalFile());
  Q_EMIT lastPcdFolderChanged();
}

QStringList Preferences::recent() const { return m_settings.value(recentKey).toStringList(); }

QUrl Preferences::recentFolder() const {
  for (const QString &source : recent())
    if (const QFileInfo file(source); file.exists()) return QUrl::fromLocalFile(file.absolutePath());
  return {};
}

void Preferences::addRecent(const QString &source) {
  QStringList sources = recent();
  sources.removeAll(source);
  sources.prepend(source);
  m_settings.setValue(recentKey, QStringList(sources.mid(0, recentLimit)));
  Q_EMIT recentChanged();
}

void Preferences::removeRecent(const QString &source) {
  QStringList sources = recent();
  sources.removeAll(source);
  m_settings.setValue(recentKey, sources);
  Q_EMIT recentChanged();
}

bool Preferences::isThere(const QString &source) { return namesLiveSource(source) || QFileInfo::exists(source); }

QString Preferences::folder() const { return QFileInfo(file()).absolutePath(); }

void Preferences::clearRecent() {
  m_settings.remove(recentKey);
  Q_EMIT recentChanged();
}

}  // namespace tarvo::skarnvisor::app
