#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "Platform/MainQueue.hpp"
#include "Platform/SystemWake.hpp"

namespace ostrel {

/// Reports the wakes of several services, after the timers that are due. A wake that two services notice is
/// reported twice.
class CombinedSystemWake final : public SystemWake {
 public:
  CombinedSystemWake(MainQueue& queue, std::vector<SystemWake*> services)
      : queue_(queue), services_(std::move(services)) {}

  [[nodiscard]] ScheduledWork observe(std::function<void()> woke) override {
    const auto follower = std::make_shared<Follower>(std::move(woke));
    const auto report = [&queue = queue_, weak = std::weak_ptr(follower)] {
      queue.post([weak] {
        if (const auto observer = weak.lock()) observer->woke();
      });
    };
    for (auto* service : services_) follower->tokens.push_back(service->observe(report));
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
