#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace ostrel {

/// What a process holds after a number of refreshes.
struct SoakFigures {
  int refreshes = 0;
  std::chrono::milliseconds time{0};  ///< since the start
  std::size_t descriptors = 0;
  std::size_t threads = 0;
  std::size_t children = 0;
  std::size_t residentKiB = 0;

  /// Of a process by its number, read from /proc.
  static SoakFigures of(pid_t process);
};

/// A run in figures: after its warm-up, which is the first tenth, and after each quarter.
struct SoakRun {
  SoakFigures warm;
  std::vector<SoakFigures> quarters;

  /// A row of a table for each.
  std::string table() const;
  /// A sentence when something has grown from the warm-up to the end, or memory from the second quarter to
  /// the last by more than half a MiB.
  std::optional<std::string> fault() const;
};

/// Takes the figures whenever the next ones are due; `process` is the one that refreshes.
class SoakClock {
 public:
  SoakClock(pid_t process, int refreshes) : process_(process), all_(refreshes) {}

  /// The number of refreshes at which figures are due next; beyond all of them when the run is over.
  int nextRefreshes() const;
  /// Call there.
  void take();
  const SoakRun& run() const { return run_; }

 private:
  const pid_t process_;
  const int all_;
  const std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
  int taken_ = 0;
  SoakRun run_;
};

}  // namespace ostrel
