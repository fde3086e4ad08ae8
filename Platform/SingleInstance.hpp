#pragma once

#include <chrono>
#include <expected>
#include <memory>

#include "Platform/PlatformError.hpp"

namespace ostrel {

/// Limits a role of the program to one process per user.
class SingleInstance {
 public:
  /// The process holds the role while this lives, which may be longer than the host. Any exit of the process
  /// releases it.
  using Claim = std::shared_ptr<void>;

  virtual ~SingleInstance() = default;

  /// Claims the role, waiting up to that time for the process that holds it. Null when it still does; an
  /// error when claiming fails. Blocks.
  [[nodiscard]] virtual std::expected<Claim, PlatformError> claim(std::chrono::milliseconds timeout) = 0;
};

}  // namespace ostrel
