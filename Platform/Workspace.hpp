#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Date.hpp"

namespace ostrel {

/// An application that runs in the user's session.
struct RunningApplication {
  std::optional<std::string> bundleIdentifier;
  std::optional<Date> launchDate;

  bool operator==(const RunningApplication&) const = default;
};

/// The user's session outside this program (NSWorkspace, NSRunningApplication, ProcessInfo). Main thread,
/// except where noted.
class Workspace {
 public:
  virtual ~Workspace() = default;

  /// The running applications. Any thread; may block.
  virtual std::vector<RunningApplication> runningApplications() const = 0;

  /// True when an application with exactly this bundle identifier is installed. Any thread; may block.
  virtual bool hasApplication(const std::string& bundleIdentifier) const = 0;

  /// True when an application is installed whose bundle identifier starts with the prefix. Any thread; may
  /// block.
  virtual bool hasApplicationWithPrefix(const std::string& prefix) const = 0;

  /// Major version of the operating system.
  virtual int systemMajorVersion() const = 0;

  /// Opens the URL with its default program; false when it cannot be opened.
  [[nodiscard]] virtual bool openUrl(const std::string& url) = 0;

  /// The id of this process.
  virtual std::int64_t processIdentifier() const = 0;

  /// True while another process of this program has that id.
  virtual bool isRunning(std::int64_t processIdentifier) const = 0;

  /// Brings that process of this program to the front; false when it cannot be reached.
  [[nodiscard]] virtual bool bringToFront(std::int64_t processIdentifier) = 0;
};

}  // namespace ostrel
