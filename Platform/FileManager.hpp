#pragma once

#include <functional>
#include <string>

namespace ostrel {

/// The desktop's program for files and folders (NSWorkspace).
class FileManager {
 public:
  virtual ~FileManager() = default;

  /// Shows the file, selected, in the desktop's file manager. `answered` comes later, once, with whether one
  /// did. Main thread.
  virtual void reveal(const std::string& path, std::function<void(bool)> answered) = 0;
};

}  // namespace ostrel
