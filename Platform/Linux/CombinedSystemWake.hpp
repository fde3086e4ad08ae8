#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "Platform/MainQueue.hpp"
#include "Platform/SystemWake.hpp"

namespace ostrel {

/// The wakes that any of several services tell, after the timers that are due by then. What two of them
/// notice is told twice.
class CombinedSystemWake final : public SystemWake {
 public:
  CombinedSystemWake(MainQueue& queue, std::vector<SystemWake*> services)
      : queue_(queue), services_(std::move(services)) {}

  [[nodiscard]] ScheduledWork observe(std::function<void()> woke) override {
    const auto follower = std::make_shared<Follower>(std::move(woke));
    const auto tell = [&queue = queue_, weak = std::weak_ptr(follower)] {
      queue.post([weak] {
        if (const auto left = weak.lock()) left->woke();
      });
    };
    for (auto* service : services_) follower->tokens.push_back(service->observe(tell));
    return follower;
  }

 private:
  struct Follower {
    explicit Follower(std::function<void()> act) : woke(std::move(act)) {}

    std::function<void()> woke;
    std::vector<ScheduledWork> tokens;
  };

  MainQueue& queue_;
  std::vector<SystemWake*> services_;
};

}  // namespace ostrel
