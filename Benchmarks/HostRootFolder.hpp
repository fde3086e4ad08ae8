#pragma once

#include "Tests/Fakes/TemporaryFolder.hpp"

namespace ostrel {

/// A host root of the benchmark's own with the scenario "protected", which the programs that it starts use.
/// Gone with this.
class HostRootFolder {
 public:
  /// Whether two reports of the helper are the same; times of `changing` ones move on with the clock.
  enum class Reports { equal, changing };

  explicit HostRootFolder(Reports reports = Reports::equal);

  const std::string& path() const { return folder_.path(); }

 private:
  TemporaryFolder folder_;
};

}  // namespace ostrel
