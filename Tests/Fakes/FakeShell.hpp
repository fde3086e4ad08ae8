#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <optional>

#include "Platform/Shell.hpp"

namespace ostrel {

/// An application whose main loop is the test's own function.
class FakeShell final : public Shell {
 public:
  void setActivationPolicy(ActivationPolicy policy) override { activationPolicy = policy; }

  int run() override {
    if (mainLoop) return mainLoop();
    ADD_FAILURE() << "no main loop is scripted";
    return -1;
  }

  void terminate() override { isTerminated = true; }
  void activate() override { ++activations; }

  std::function<int()> mainLoop;
  std::optional<ActivationPolicy> activationPolicy;
  bool isTerminated = false;
  int activations = 0;
};

}  // namespace ostrel
