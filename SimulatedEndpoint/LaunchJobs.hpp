#pragma once

#include <sys/types.h>

#include <expected>
#include <string>

#include "Platform/Files.hpp"
#include "Platform/SimulatedMac/HostRoot.hpp"
#include "SimulatedEndpoint/Json.hpp"

namespace ostrel::simulated {

/// The jobs that the stand-in for launchd has loaded for this user. Every call waits for the calls of other
/// processes; failures are the statuses that launchctl gives.
class LaunchJobs {
 public:
  /// Statuses of launchctl: nothing of that name is loaded, loading failed, no service in the domain, no
  /// graphical session.
  static constexpr int done = 0;
  static constexpr int noSuchProcess = 3;
  static constexpr int inputOutputError = 5;
  static constexpr int noSuchService = 113;
  static constexpr int unsupportedDomain = 125;

  /// The files take real paths.
  LaunchJobs(Files& files, const HostRoot& root);

  /// Loads the job of a property list, a Mac path, into the domain "gui/UID" and starts it where the list
  /// says so. The job inherits the environment and leads a session of its own.
  int bootstrap(const std::string& domain, const std::string& propertyList);

  /// Ends the job "gui/UID/LABEL", waits until it has ended, and forgets it.
  int bootout(const std::string& service);

  /// Ends the job if it runs, waits, and starts it again.
  int kickstart(const std::string& service);

  /// Number of the job's process, 0 when it has none.
  pid_t process(const std::string& service) const;

 private:
  Json load() const;
  [[nodiscard]] bool store(const Json& jobs);
  [[nodiscard]] bool start(Json& job);

  Files& files_;
  const HostRoot& root_;
  const std::string path_;
  const std::string lockPath_;
};

}  // namespace ostrel::simulated
