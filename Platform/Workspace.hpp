#pragma once

#include <string>

namespace ostrel {

/// The person's session beyond this program (NSWorkspace, ProcessInfo). Main thread.
class Workspace {
 public:
  virtual ~Workspace() = default;

  /// Number before the first dot of the system's version.
  virtual int systemMajorVersion() const = 0;

  /// Opens the URL with the program that is there for it; false when it cannot be opened.
  virtual bool openUrl(const std::string& url) = 0;
};

}  // namespace ostrel
