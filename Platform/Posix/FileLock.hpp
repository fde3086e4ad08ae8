#pragma once

#include <chrono>
#include <expected>
#include <string>
#include <utility>

#include "Platform/PlatformError.hpp"

namespace ostrel {

/// Locks a file against other processes and threads while it, or files beside it, are changed.
class FileLock {
 public:
  /// Changes are short and the main thread may wait for the lock, so the wait is limited.
  static constexpr std::chrono::milliseconds defaultTimeout{2000};

  /// Waits for the lock on the file at a real path. Fails when the file cannot be created, and with ETIMEDOUT
  /// when the wait takes too long.
  [[nodiscard]] static std::expected<FileLock, PlatformError> take(
      const std::string& path, std::chrono::milliseconds timeout = defaultTimeout);

  FileLock(FileLock&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
  FileLock& operator=(FileLock&&) = delete;
  ~FileLock();

 private:
  explicit FileLock(int descriptor) : descriptor_(descriptor) {}

  int descriptor_;
};

}  // namespace ostrel
