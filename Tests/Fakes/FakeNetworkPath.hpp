#pragma once

#include <memory>
#include <utility>

#include "Platform/NetworkPath.hpp"

namespace ostrel {

/// A network that changes when the test says so.
class FakeNetworkPath final : public NetworkPath {
 public:
  [[nodiscard]] ScheduledWork observe(std::function<void(const NetworkPathUpdate&)> updated) override {
    auto observer = std::make_shared<std::function<void(const NetworkPathUpdate&)>>(std::move(updated));
    observer_ = observer;
    return observer;
  }

  bool isObserved() const { return !observer_.expired(); }

  void update(bool satisfied, std::vector<std::string> interfaces = {}) const {
    if (const auto observer = observer_.lock()) (*observer)({satisfied, std::move(interfaces)});
  }

 private:
  std::weak_ptr<std::function<void(const NetworkPathUpdate&)>> observer_;
};

}  // namespace ostrel
