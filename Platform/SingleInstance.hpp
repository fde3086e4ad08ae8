#pragma once

#include <chrono>
#include <expected>
#include <memory>

#include "Platform/PlatformError.hpp"

namespace ostrel {

/// Keeps a role of the program to one process a person.
class SingleInstance {
 public:
  /// The role is the process's own while this lives, which may be longer than the host. A process that ends,
  /// in whatever way, gives it up.
  using Claim = std::shared_ptr<void>;

  virtual ~SingleInstance() = default;

  /// Claims the role, and waits that long for a process that has it to end. No claim when it has not; an
  /// error when nothing can be claimed here. Blocks.
  [[nodiscard]] virtual std::expected<Claim, PlatformError> claim(std::chrono::milliseconds patience) = 0;
};

}  // namespace ostrel
