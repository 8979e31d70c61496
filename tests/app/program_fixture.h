#pragma once

#include <gtest/gtest.h>

#include <QProcess>
#include <QString>
#include <QStringList>
#include <QUdpSocket>
#include <vector>

#include "tests/support/files.h"

namespace tarvo::skarnvisor::test {

struct ProgramResult {
  int exitCode = -1;
  QString out;
  QString err;

  /// The value of a "name: value" line on standard output, without digit groups.
  QString value(const QString &name) const {
    for (const QString &line : out.split('\n')) {
      if (line.startsWith(name + ": ")) return line.mid(name.size() + 2).remove(',');
    }
    return {};
  }
};

/// Runs a program to its end; a crash gives the exit code -1. There is no display but what `extra` names.
inline ProgramResult runProgram(const QString &program, const QStringList &arguments,
                                const QList<QPair<QString, QString>> &extra = {}) {
  QProcess process;
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  for (const char *name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) environment.remove(name);
  for (const auto &[name, value] : extra) environment.insert(name, value);
  process.setProcessEnvironment(environment);
  process.start(program, arguments);
  constexpr int limitMs = 120000;
  if (!process.waitForFinished(limitMs)) process.kill();
  ProgramResult result;
  if (process.exitStatus() == QProcess::NormalExit) result.exitCode = process.exitCode();
  result.out = QString::fromLocal8Bit(process.readAllStandardOutput());
  result.err = QString::fromLocal8Bit(process.readAllStandardError());
  return result;
}

inline ProgramResult skarnvisor(const QStringList &arguments) {
  return runProgram(QStringLiteral(SKARNVISOR_PROGRAM), arguments);
}

/// A capture that the simulator writes with these options.
inline void makeCapture(const QString &path, const QStringList &options) {
  const ProgramResult made = runProgram(QStringLiteral(SKARNVISOR_SIM), QStringList{"--out", path} + options);
  ASSERT_EQ(made.exitCode, 0) << made.err.toStdString();
}

/// Arguments that the program refuses, and what it must say.
struct Refusal {
  QStringList arguments;
  QStringList told;
};

/// Runs the program on each; a failure of the work itself is one sentence and the exit code 1.
inline void expectRefusals(const QStringList &before, const std::vector<Refusal> &refusals) {
  for (const Refusal &row : refusals) {
    const ProgramResult result = skarnvisor(before + row.arguments);
    SCOPED_TRACE((before + row.arguments).join(' ').toStdString() + "\n" + result.err.toStdString());
    EXPECT_GT(result.exitCode, 0);
    if (result.exitCode == 1) {
      EXPECT_EQ(result.err.count('\n'), 1);
    }
    for (const QString &part : row.told) EXPECT_TRUE(result.err.contains(part)) << part.toStdString();
  }
}

inline void writeFile(const QString &path, const QByteArray &bytes) {
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
  file.write(bytes);
}

/// A port that nobody uses at this moment.
inline quint16 freePort() {
  QUdpSocket probe;
  probe.bind(QHostAddress(QHostAddress::AnyIPv4), 0);
  return probe.localPort();
}

/// A simulator that sends to a port of this machine for as long as it lives.
class Stream {
 public:
  explicit Stream(quint16 port) {
    m_process.start(QStringLiteral(SKARNVISOR_SIM), {"--stream", QStringLiteral("127.0.0.1:%1").arg(port), "--seconds",
                                                     "0", "--channels", "16", "--columns", "120"});
    m_process.waitForStarted();
  }
  ~Stream() {
    m_process.kill();
    m_process.waitForFinished();
  }

 private:
  QProcess m_process;
};

}  // namespace tarvo::skarnvisor::test
