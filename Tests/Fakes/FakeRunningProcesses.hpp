#pragma once

#include "Platform/RunningProcesses.hpp"

namespace ostrel {

/// A process table that the test fills.
class FakeRunningProcesses final : public RunningProcesses {
 public:
  std::vector<std::string> names() const override {
    std::vector<std::string> cut;
    for (const auto& name : processes) cut.push_back(name.substr(0, 16));
    return cut;
  }

  std::vector<std::string> processes;
};

}  // namespace ostrel
