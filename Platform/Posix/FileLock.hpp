#pragma once

#include <chrono>
#include <expected>
#include <string>
#include <utility>

#include "Platform/PlatformError.hpp"

namespace ostrel {

/// Holds a file for one change of it, or of files beside it, against other processes and threads.
class FileLock {
 public:
  /// Changes are short, and a main thread may wait: who holds the lock longer than this is not well.
  static constexpr std::chrono::milliseconds usualPatience{2000};

  /// Takes the lock by the real path of its file, waiting for its turn. Fails where the file cannot be made,
  /// and with ETIMEDOUT when the turn does not come in time.
  [[nodiscard]] static std::expected<FileLock, PlatformError> take(
      const std::string& path, std::chrono::milliseconds patience = usualPatience);

  FileLock(FileLock&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
  FileLock& operator=(FileLock&&) = delete;
  ~FileLock();

 private:
  explicit FileLock(int descriptor) : descriptor_(descriptor) {}

  int descriptor_;
};

}  // namespace ostrel
