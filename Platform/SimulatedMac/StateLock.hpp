#pragma once

#include <string>

namespace ostrel {

/// Holds the simulated Mac's state for one change, against other processes and threads; waits for its turn.
/// Where the lock's file cannot be made nothing is held, and the change cannot be written either.
class StateLock {
 public:
  /// Real path of the lock's file.
  explicit StateLock(const std::string& path);
  ~StateLock();
  StateLock(const StateLock&) = delete;
  StateLock& operator=(const StateLock&) = delete;

 private:
  int descriptor_ = -1;
};

}  // namespace ostrel
