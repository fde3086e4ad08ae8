#pragma once

#include <cstdint>
#include <string>

namespace ostrel {

/// The user's session outside this program (NSWorkspace, NSRunningApplication, ProcessInfo). Main thread.
class Workspace {
 public:
  virtual ~Workspace() = default;

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
