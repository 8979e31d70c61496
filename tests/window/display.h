#pragma once

#include <QByteArray>

namespace tarvo::skarnvisor::test {

/// An X server of the process's own, drawn in memory. It ends with the process that started it.
class Display {
 public:
  /// Starts it and waits until it takes clients.
  Display();
  ~Display();
  Display(const Display &) = delete;
  Display &operator=(const Display &) = delete;

  /// ":7" or the like; empty where there is no Xvfb.
  const QByteArray &name() const { return m_name; }

 private:
  int m_process = -1;
  QByteArray m_name;
};

}  // namespace tarvo::skarnvisor::test
