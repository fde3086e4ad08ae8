#pragma once

#include <cstdlib>
#include <string>
#include <vector>

#include "Tests/EndToEnd/DesktopShell.hpp"

namespace ostrel {

/// The program on a display, with a user at keyboard and mouse who is played by xdotool.
struct ShownDesktop : DesktopShell {
  ShownDesktop() {
    environment.erase("QT_QPA_PLATFORM");
    environment["DISPLAY"] = std::getenv("DISPLAY");
  }

  /// Runs xdotool; gives what it prints.
  std::string xdotool(std::vector<std::string> command) const {
    command.insert(command.begin(), "xdotool");
    return run(command, environment).output;
  }

  /// The windows that can be seen with that in their names, each in a line.
  std::string windows(const char* name) const { return xdotool({"search", "--onlyvisible", "--name", name}); }

  /// Acts again and again, with a second between, until something has become true.
  template <class Act, class Condition>
  bool by(Act act, Condition condition) const {
    using std::chrono::steady_clock;
    const auto deadline = steady_clock::now() + std::chrono::seconds(30);
    while (steady_clock::now() < deadline) {
      act();
      const auto next = steady_clock::now() + std::chrono::seconds(1);
      while (steady_clock::now() < next) {
        if (condition()) return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
      }
    }
    return false;
  }
};

}  // namespace ostrel
