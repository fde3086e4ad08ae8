#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "Platform/SingleInstance.hpp"

namespace ostrel {

/// A role that another process has, or not, as the test says. Nobody waits.
class FakeSingleInstance final : public SingleInstance {
 public:
  [[nodiscard]] std::expected<Claim, PlatformError> claim(std::chrono::milliseconds patience) override {
    patiences.push_back(patience);
    if (error) return std::unexpected(*error);
    if (isAnothers || !claimed_.expired()) return nullptr;
    const auto made = std::make_shared<int>();
    claimed_ = made;
    return made;
  }

  std::vector<std::chrono::milliseconds> patiences;  ///< of every claim, in order
  bool isAnothers = false;
  std::optional<PlatformError> error;

 private:
  std::weak_ptr<int> claimed_;
};

}  // namespace ostrel
