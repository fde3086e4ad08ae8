#pragma once

#include <string>
#include <vector>

namespace ostrel {

/// The process table (sysctl KERN_PROC_ALL). Any thread.
class RunningProcesses {
 public:
  virtual ~RunningProcesses() = default;

  /// Command names, each cut to its first 16 bytes as the kernel keeps them, in the kernel's order with
  /// duplicates; empty when the table cannot be read.
  virtual std::vector<std::string> names() const = 0;
};

}  // namespace ostrel
