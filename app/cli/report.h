#pragma once

#include <QList>
#include <QLocale>
#include <QPair>
#include <QString>

namespace tarvo::skarnvisor::app {

class CaptureSession;

/// Rows of "name: value" for people and scripts.
class Report {
 public:
  void add(const char *name, const QString &value) { m_rows.append({QString::fromLatin1(name), value}); }
  QString text() const;
  void print() const;
  /// An empty string, or one sentence.
  QString write(const QString &file) const;

 private:
  QList<QPair<QString, QString>> m_rows;
};

/// Digits in groups of three.
template <typename Integer>
QString grouped(Integer number) {
  return QLocale(QLocale::English).toString(static_cast<qlonglong>(number));
}

/// Type, port, frames, time span and duration of what is open.
void addCaptureRows(Report &report, CaptureSession &session);

}  // namespace tarvo::skarnvisor::app
