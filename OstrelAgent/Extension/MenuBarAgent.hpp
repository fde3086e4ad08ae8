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

/// The job of the person's launchd that runs the menu-bar role in every login session. Calls block; any
/// thread. Copies are equal. With the end of the host they leave off, without a word.
class MenuBarAgent {
 public:
  /// Exit status for a launchctl that cannot be started; its own statuses pass through.
  static constexpr std::int32_t launchctlNotStarted = 126;

  MenuBarAgent(const Bundle& bundle, Files& files, ChildProcesses& childProcesses, StandardStreams& streams,
               const UserAccount& account);

  /// Writes the job file and starts the job anew; tells on standard output how that went.
  void install() const;

  /// Ends the job and starts it again, also when it was not loaded. Silent.
  void restart() const;

  /// Ends the job and removes its file, when they are there. Silent.
  void remove() const;

  /// Runs launchctl without its output; gives its exit status, nothing when the end of the host has ended it.
  [[nodiscard]] std::optional<std::int32_t> launchctl(const std::vector<std::string>& arguments) const;

  /// True when the job file is there.
  bool isInstalled() const;

  /// The job file for a program, an XML property list; an error when XML cannot hold the program's path.
  [[nodiscard]] static std::expected<std::string, PlatformError> jobFile(std::string_view executable);

 private:
  [[nodiscard]] std::expected<void, PlatformError> writeJobFile(std::string_view executable) const;

  const Bundle* bundle_;
  Files* files_;
  ChildProcesses* childProcesses_;
  StandardStreams* streams_;
  std::string folder_;   ///< of the job file
  std::string path_;     ///< of the job file
  std::string session_;  ///< the person's login session, as launchctl names it
  std::string job_;      ///< the job, likewise
};

}  // namespace ostrel
