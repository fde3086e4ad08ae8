#pragma once

#include <memory>
#include <utility>

#include "Platform/NetworkPath.hpp"

namespace ostrel {

/// A network that changes when the test says so.
class FakeNetworkPath final : public NetworkPath {
 public:
  [[nodiscard]] ScheduledWork observe(std::function<void(const NetworkPathUpdate&)> updated) override {
    auto follower = std::make_shared<std::function<void(const NetworkPathUpdate&)>>(std::move(updated));
    follower_ = follower;
    return follower;
  }

  bool isFollowed() const { return !follower_.expired(); }

  void update(bool satisfied, std::vector<std::string> interfaces = {}) const {
    if (const auto follower = follower_.lock()) (*follower)({satisfied, std::move(interfaces)});
  }

 private:
  std::weak_ptr<std::function<void(const NetworkPathUpdate&)>> follower_;
};

}  // namespace ostrel
