#include "app/cli/interrupt.h"

#include <csignal>

namespace tarvo::skarnvisor::app {
namespace {

volatile std::sig_atomic_t interrupted = 0;

void note(int) { interrupted = 1; }

}  // namespace

Interrupt::Interrupt() {
  interrupted = 0;
  std::signal(SIGINT, note);
  std::signal(SIGTERM, note);
}

Interrupt::~Interrupt() {
  std::signal(SIGINT, SIG_DFL);
  std::signal(SIGTERM, SIG_DFL);
}

bool Interrupt::came() { return interrupted != 0; }

}  // namespace tarvo::skarnvisor::app
