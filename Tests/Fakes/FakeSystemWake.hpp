#pragma once

#include <memory>
#include <utility>

#include "Platform/SystemWake.hpp"

namespace ostrel {

/// A system that wakes when the test says so.
class FakeSystemWake final : public SystemWake {
 public:
  [[nodiscard]] ScheduledWork observe(std::function<void()> woke) override {
    auto follower = std::make_shared<std::function<void()>>(std::move(woke));
    follower_ = follower;
    return follower;
  }

  bool isFollowed() const { return !follower_.expired(); }

  void wake() const {
    if (const auto follower = follower_.lock()) (*follower)();
  }

 private:
  std::weak_ptr<std::function<void()>> follower_;
};

}  // namespace ostrel
