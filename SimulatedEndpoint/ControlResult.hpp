#pragma once

#include <string>

namespace ostrel::simulated {

/// What a command line of the control program comes to: exit status 0 with text for the standard output, else
/// text for the standard error.
struct ControlResult {
  int status = 0;
  std::string text;
};

inline ControlResult usageFault(const std::string& sentence) {
  return {2, "simulated-endpoint: " + sentence + "\n"};
}

inline ControlResult failed(const std::string& sentence) {
  return {1, "simulated-endpoint: " + sentence + "\n"};
}

}  // namespace ostrel::simulated
