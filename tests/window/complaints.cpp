#include "tests/window/complaints.h"

#include <cstdio>
#include <mutex>
#include <utility>

namespace tarvo::skarnvisor::test {
namespace {

std::mutex mutex;
QString complaints;

void keep(QtMsgType type, const QMessageLogContext &, const QString &message) {
  std::fprintf(stderr, "%s\n", qPrintable(message));
  // The platform's word on windows that come and go or on a desktop without a file manager, and Qt's own controls, are
  // nothing that we could mend.
  const bool foreign = message.startsWith("QXcb") || message.startsWith("file:///usr/") ||
                       message.startsWith("Unable to detect a launcher");
  if (type == QtDebugMsg || type == QtInfoMsg || foreign) return;
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
