#pragma once

#include <QFile>

namespace tarvo::skarnvisor::test {

/// Milliseconds that this thread was ready to run while none of the processors was free for it.
inline double waitedForProcessor() {
  QFile file(QStringLiteral("/proc/thread-self/schedstat"));
  return file.open(QIODevice::ReadOnly) ? file.readAll().split(' ').value(1).toDouble() / 1e6 : 0;
}

}  // namespace tarvo::skarnvisor::test
