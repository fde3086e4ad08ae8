#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "Platform/SingleInstance.hpp"

namespace ostrel {

/// A role that another process may have, as the test says. A claim never waits.
class FakeSingleInstance final : public SingleInstance {
 public:
  [[nodiscard]] std::expected<Claim, PlatformError> claim(std::chrono::milliseconds timeout) override {
    timeouts.push_back(timeout);
    if (error) return std::unexpected(*error);
    if (isAnothers || !claimed_.expired()) return nullptr;
    const auto made = std::make_shared<int>();
    claimed_ = made;
    return made;
  }

  std::vector<std::chrono::milliseconds> timeouts;  ///< of every claim, in order
  bool isAnothers = false;
  std::optional<PlatformError> error;

 private:
  std::weak_ptr<int> claimed_;
};

}  // namespace ostrel
