#pragma once

#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Bundle.hpp"
#include "Platform/ChildProcesses.hpp"
#include "Platform/Files.hpp"
#include "Platform/StandardStreams.hpp"
#include "Platform/UserAccount.hpp"

namespace ostrel {

/// The user's launchd job that runs the menu-bar role in every login session. Calls block; any thread. Copies
/// are interchangeable. When the host shuts down, calls return silently.
class MenuBarAgent {
 public:
  /// Exit status for a launchctl that cannot be started; its own statuses pass through.
  static constexpr std::int32_t launchctlNotStarted = 126;

  MenuBarAgent(const Bundle& bundle, Files& files, ChildProcesses& childProcesses, StandardStreams& streams,
               const UserAccount& account);

  /// Writes the job file and restarts the job; prints the outcome on standard output.
  void install() const;

  /// Restarts the job, or starts it when it was not loaded. Prints nothing.
  void restart() const;

  /// Ends the job and removes its file, if they exist. Prints nothing.
  void remove() const;

  /// Runs launchctl and discards its output; returns its exit status, or nullopt when the host's shutdown
  /// killed it.
  [[nodiscard]] std::optional<std::int32_t> launchctl(const std::vector<std::string>& arguments) const;

  /// True when the job file exists.
  bool isInstalled() const;

  /// The job file for a program as an XML property list; an error when XML cannot represent the program's
  /// path.
  [[nodiscard]] static std::expected<std::string, PlatformError> jobFile(std::string_view executable);

 private:
  [[nodiscard]] std::expected<void, PlatformError> writeJobFile(std::string_view executable) const;

  const Bundle* bundle_;
  Files* files_;
  ChildProcesses* childProcesses_;
  StandardStreams* streams_;
  std::string folder_;   ///< of the job file
  std::string path_;     ///< of the job file
  std::string session_;  ///< the user's login session, in launchctl's notation
  std::string job_;      ///< the job, in the same notation
};

}  // namespace ostrel
