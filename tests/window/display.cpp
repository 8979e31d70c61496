#include "tests/window/display.h"

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <string>

namespace tarvo::skarnvisor::test {

Display::Display() {
  int ends[2];
  if (pipe(ends) != 0) return;
  m_process = fork();
  if (m_process == 0) {
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    close(ends[0]);
    const std::string target = std::to_string(ends[1]);
    execlp("Xvfb", "Xvfb", "-displayfd", target.c_str(), "-screen", "0", "1400x950x24", "-nolisten", "tcp", nullptr);
    _exit(127);
  }
  close(ends[1]);
  // The number comes when the server takes clients; without a server the pipe just closes.
  char digit;
  while (read(ends[0], &digit, 1) == 1 && digit != '\n') m_name += digit;
  close(ends[0]);
  if (!m_name.isEmpty()) m_name.prepend(':');
}

Display::~Display() {
  if (m_process <= 0) return;
  kill(m_process, SIGTERM);
  waitpid(m_process, nullptr, 0);
}

}  // namespace tarvo::skarnvisor::test
