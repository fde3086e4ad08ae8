#pragma once

#include <string>

namespace ostrel {

/// A host root of the benchmark's own with the scenario "protected", which the programs that it starts use.
/// Gone with this.
class HostRootFolder {
 public:
  HostRootFolder();
  ~HostRootFolder();
  HostRootFolder(const HostRootFolder&) = delete;
  HostRootFolder& operator=(const HostRootFolder&) = delete;

  const std::string& path() const { return path_; }

 private:
  std::string path_ = "/tmp/ostrel-bench-XXXXXX";
};

}  // namespace ostrel
