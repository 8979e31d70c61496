#pragma once

#include <sys/resource.h>

#include <QFile>
#include <csignal>

namespace tarvo::skarnvisor::test {

/// All bytes of a file; none where it cannot be opened.
inline QByteArray contents(const QString &path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Keeps files of this process from growing beyond `bytes` while it lives, as a full disk would.
class FileLimit {
 public:
  explicit FileLimit(rlim_t bytes) : m_handler(std::signal(SIGXFSZ, SIG_IGN)) {
    ::getrlimit(RLIMIT_FSIZE, &m_before);
    const rlimit limit{bytes, m_before.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FileLimit() {
    ::setrlimit(RLIMIT_FSIZE, &m_before);
    std::signal(SIGXFSZ, m_handler);
  }
  FileLimit(const FileLimit &) = delete;
  FileLimit &operator=(const FileLimit &) = delete;

 private:
  rlimit m_before{};
  void (*m_handler)(int);
};

}  // namespace tarvo::skarnvisor::test
