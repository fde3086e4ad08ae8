#pragma once

#include <string>
#include <utility>

#include "Platform/SingleInstance.hpp"

namespace ostrel {

/// The process that holds the lock of a file (flock(2)) has the role. Child processes do not inherit the
/// lock.
class PosixSingleInstance final : public SingleInstance {
 public:
  /// Takes the real path of the file, which is created with its folders when missing.
  explicit PosixSingleInstance(std::string lockPath) : lockPath_(std::move(lockPath)) {}

  [[nodiscard]] std::expected<Claim, PlatformError> claim(std::chrono::milliseconds timeout) override;

 private:
  const std::string lockPath_;
};

}  // namespace ostrel
