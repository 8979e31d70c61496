#pragma once

#include <QObject>
#include <QSettings>
#include <QStringList>
#include <QUrl>
#include <QVariant>

namespace tarvo::skarnvisor::app {

/// What the window remembers, in the group "Viewer" of the settings file that the plug-in uses too. GUI thread.
class Preferences : public QObject {
  Q_OBJECT
  /// What was opened last, newest first.
  Q_PROPERTY(QStringList recent READ recent NOTIFY recentChanged)
  /// The folder that holds the newest of them on this machine; empty without one.
  Q_PROPERTY(QUrl recentFolder READ recentFolder NOTIFY recentChanged)
  /// Where the last PCD file was saved, by this program or by a buffer's own dialog; empty at first.
  Q_PROPERTY(QUrl lastPcdFolder READ lastPcdFolder NOTIFY lastPcdFolderChanged)
  /// The settings file, and the folder of the program's data that it lies in.
  Q_PROPERTY(QString file READ file CONSTANT)
  Q_PROPERTY(QString folder READ folder CONSTANT)
  Q_PROPERTY(QUrl folderUrl READ folderUrl CONSTANT)

 public:
  explicit Preferences(QObject *parent = nullptr);

  /// The remembered value as the type that `fallback` has; `fallback` where there is none.
  Q_INVOKABLE QVariant value(const QString &key, const QVariant &fallback) const;
  Q_INVOKABLE void setValue(const QString &key, const QVariant &value);
  /// Whether a capture opened from now on asks for two views. The render buffer reads it.
  Q_INVOKABLE void setSplitWindow(bool split) { m_settings.setValue(QStringLiteral("SplitWindow"), split); }

  QUrl lastPcdFolder() const;
  Q_INVOKABLE void notePcdFile(const QUrl &file);

  bool splitWindow() const { return m_settings.value(QStringLiteral("SplitWindow")).toBool(); }

  QStringList recent() const;
  QUrl recentFolder() const;
  void addRecent(const QString &source);
  Q_INVOKABLE void removeRecent(const QString &source);
  Q_INVOKABLE void clearRecent();
  /// Whether a remembered source can still be asked for: a live one always, a file or folder while it exists.
  Q_INVOKABLE static bool isThere(const QString &source);

  QString file() const { return m_settings.fileName(); }
  QString folder() const;
  QUrl folderUrl() const { return QUrl::fromLocalFile(folder()); }

 Q_SIGNALS:
  void recentChanged();
  void lastPcdFolderChanged();

 private:
  QSettings m_settings;
};

}  // namespace tarvo::skarnvisor::app
