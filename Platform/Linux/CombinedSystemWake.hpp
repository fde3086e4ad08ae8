#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "Platform/SystemWake.hpp"

namespace ostrel {

/// The wakes that any of several services tell. What two of them notice is told twice.
class CombinedSystemWake final : public SystemWake {
 public:
  explicit CombinedSystemWake(std::vector<SystemWake*> services) : services_(std::move(services)) {}

  [[nodiscard]] ScheduledWork follow(std::function<void()> woke) override {
    const auto tokens = std::make_shared<std::vector<ScheduledWork>>();
    for (auto* service : services_) tokens->push_back(service->follow(woke));
    return tokens;
  }

 private:
  std::vector<SystemWake*> services_;
};

}  // namespace ostrel
