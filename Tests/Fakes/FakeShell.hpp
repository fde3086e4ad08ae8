#pragma once

#include <gtest/gtest.h>

#include <optional>

#include "Platform/Shell.hpp"

namespace ostrel {

/// An application that counts how often it came to the front and was to end; the test is its main loop.
class FakeShell final : public Shell {
 public:
  void setActivationPolicy(ActivationPolicy wanted) override { policy = wanted; }
  void setMainMenu(const std::vector<Menu>& menus) override { menuBar = menus; }
  int run() override { return ADD_FAILURE() << "the test is the main loop", -1; }
  void terminate(int status) override {
    if (terminations++ == 0) exitStatus = status;
  }
  void activate() override { ++activations; }

  std::optional<ActivationPolicy> policy;
  std::vector<Menu> menuBar;
  int activations = 0;
  int terminations = 0;
  std::optional<int> exitStatus;
};

}  // namespace ostrel
