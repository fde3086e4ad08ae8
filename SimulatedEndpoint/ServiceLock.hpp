#pragma once

#include <expected>
#include <string>

#include "Platform/Posix/Descriptor.hpp"

namespace ostrel::simulated {

/// Held by the one daemon that serves a host root, for as long as its process lives.
class ServiceLock {
 public:
  /// Real path of the lock's file; a sentence when another process holds it or the file cannot be made.
  [[nodiscard]] static std::expected<ServiceLock, std::string> take(const std::string& path);

 private:
  explicit ServiceLock(Descriptor file) : file_(std::move(file)) {}

  Descriptor file_;
};

/// Asks the process that holds the lock to end, and waits for a few seconds until it has.
void endService(const std::string& lockPath);

}  // namespace ostrel::simulated
