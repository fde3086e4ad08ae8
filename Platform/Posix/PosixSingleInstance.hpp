#pragma once

#include <string>
#include <utility>

#include "Platform/SingleInstance.hpp"

namespace ostrel {

/// The role belongs to whoever has locked a file (flock(2)). Children that are started do not keep the lock.
class PosixSingleInstance final : public SingleInstance {
 public:
  /// Real path of the file, which is made where it is missing, with the folders above it.
  explicit PosixSingleInstance(std::string lockPath) : lockPath_(std::move(lockPath)) {}

  [[nodiscard]] std::expected<Claim, PlatformError> claim(std::chrono::milliseconds patience) override;

 private:
  const std::string lockPath_;
};

}  // namespace ostrel
