#pragma once

namespace tarvo::skarnvisor::app {

/// While it lives, Ctrl-C and a request to end are noted in place of ending the program at once. One at a time.
class Interrupt {
 public:
  Interrupt();
  ~Interrupt();
  Interrupt(const Interrupt &) = delete;
  Interrupt &operator=(const Interrupt &) = delete;
  [[nodiscard]] static bool came();
};

}  // namespace tarvo::skarnvisor::app
