#pragma once

#include "Tests/Fakes/TemporaryFolder.hpp"

namespace ostrel {

/// A host root of the benchmark's own with the scenario "protected", which the programs that it starts use.
/// Gone with this.
class HostRootFolder {
 public:
  HostRootFolder();

  const std::string& path() const { return folder_.path(); }

 private:
  TemporaryFolder folder_;
};

}  // namespace ostrel
