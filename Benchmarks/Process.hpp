#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace ostrel {

/// A child process that the benchmark measures; the destructor kills it.
class Process {
 public:
  /// Starts it with an empty standard input, and its output and errors discarded. Throws std::runtime_error.
  explicit Process(const std::vector<std::string>& command);
  ~Process();
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  /// CPU time of all its current threads.
  std::chrono::nanoseconds cpuTime() const;

  /// Context switches of all its current threads, voluntary or not.
  std::uint64_t contextSwitches() const;

  /// Resident memory in KiB.
  std::uint64_t residentKiB() const;

  /// Memory in KiB by the name in smaps_rollup: "Rss", "Private_Dirty".
  std::uint64_t memoryKiB(const std::string& name) const;

 private:
  pid_t pid_ = -1;
};

/// Microseconds from start to end of a short command, the median of the rounds. Its output is discarded.
double medianRunMicroseconds(const std::vector<std::string>& command, int rounds);

/// Milliseconds of CPU of a short command and the children it has waited for, the median of the rounds.
/// Throws std::runtime_error when it fails.
double medianRunCpuMilliseconds(const std::vector<std::string>& command, int rounds);

}  // namespace ostrel
