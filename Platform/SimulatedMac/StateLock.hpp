#pragma once

#include <chrono>
#include <expected>
#include <string>
#include <utility>

#include "Platform/PlatformError.hpp"

namespace ostrel {

/// Holds the simulated Mac's state for one change, against other processes and threads.
class StateLock {
 public:
  /// Changes are short, and a main thread may wait: who holds the lock longer than this is not well.
  static constexpr std::chrono::milliseconds usualPatience{2000};

  /// Takes the lock by the real path of its file, waiting for its turn. Fails where the file cannot be made,
  /// and with ETIMEDOUT when the turn does not come in time.
  static std::expected<StateLock, PlatformError> take(const std::string& path,
                                                      std::chrono::milliseconds patience = usualPatience);

  StateLock(StateLock&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
  StateLock& operator=(StateLock&&) = delete;
  ~StateLock();

 private:
  explicit StateLock(int descriptor) : descriptor_(descriptor) {}

  int descriptor_;
};

}  // namespace ostrel
