#include "tests/window/complaints.h"

#include <cstdio>
#include <mutex>

namespace tarvo::skarnvisor::test {
namespace {

std::mutex mutex;
QString complaints;

void keep(QtMsgType type, const QMessageLogContext &, const QString &message) {
  std::fprintf(stderr, "%s\n", qPrintable(message));
  if (type == QtDebugMsg || type == QtInfoMsg) return;
  const std::lock_guard lock(mutex);
  complaints += message + '\n';
}

}  // namespace

void collectComplaints() { qInstallMessageHandler(keep); }

QString takeComplaints() {
  const std::lock_guard lock(mutex);
  return std::exchange(complaints, QString());
}

}  // namespace tarvo::skarnvisor::test
