#pragma once

#include <functional>
#include <string>

namespace tarvo::lidar {

// Finds the family of a lidar type and calls that family's callback. Callbacks are set by their user before parse.
class OrnikaLoader {
 public:
  using Callback = std::function<int(const std::string &type, int port)>;

  // Calls one callback with `type` and `port` on the calling thread, before it returns. A type that no family claims
  // goes to callbackDefault; a callback that is empty is passed over with a log line.
  void parse(std::string type, int port);

  Callback callbackDefault;
  Callback callbackOrnikaKR;
  Callback callbackOrnikaLM;
  Callback callbackOrnikaQS;
  Callback callbackOrnikaFMCW;
  Callback callbackOrnikaNB;
};

}  // namespace tarvo::lidar

namespace tarvo {
using lidar::OrnikaLoader;
}
