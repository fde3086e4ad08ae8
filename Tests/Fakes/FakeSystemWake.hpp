#pragma once

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

#include "Platform/SystemWake.hpp"

namespace ostrel {

/// A system that wakes when the test says so.
class FakeSystemWake final : public SystemWake {
 public:
  [[nodiscard]] ScheduledWork observe(std::function<void()> woke) override {
    auto observer = std::make_shared<std::function<void()>>(std::move(woke));
    observers_.push_back(observer);
    return observer;
  }

  bool isObserved() const {
    return std::ranges::any_of(observers_, [](const auto& observer) { return !observer.expired(); });
  }

  void wake() const {
    for (const auto& weak : observers_) {
      if (const auto observer = weak.lock()) (*observer)();
    }
  }

 private:
  std::vector<std::weak_ptr<std::function<void()>>> observers_;
};

}  // namespace ostrel
