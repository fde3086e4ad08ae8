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
    auto follower = std::make_shared<std::function<void()>>(std::move(woke));
    followers_.push_back(follower);
    return follower;
  }

  bool isFollowed() const {
    return std::ranges::any_of(followers_, [](const auto& follower) { return !follower.expired(); });
  }

  void wake() const {
    for (const auto& weak : followers_) {
      if (const auto follower = weak.lock()) (*follower)();
    }
  }

 private:
  std::vector<std::weak_ptr<std::function<void()>>> followers_;
};

}  // namespace ostrel
