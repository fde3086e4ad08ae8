#pragma once

#include <sys/types.h>

#include <expected>
#include <string>
#include <vector>

#include "SimulatedEndpoint/Json.hpp"

namespace ostrel::simulated {

/// A process that another program of the stand-ins may have started; its start time distinguishes it from a
/// later one of the same number.
struct LaunchedProcess {
  pid_t number = 0;
  std::string started;  ///< in the clock of the kernel; empty when it is unknown

  /// Starts a program in a session of its own, its output behind what the log holds already.
  [[nodiscard]] static std::expected<LaunchedProcess, std::string> start(
      const std::vector<std::string>& program, const std::string& logPath);

  static LaunchedProcess of(const Json& job);
  void writeTo(Json& job) const;

  bool isRunning() const;

  /// Asks it to end and waits; after five seconds it is killed.
  void end() const;
};

}  // namespace ostrel::simulated
