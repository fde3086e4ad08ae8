#pragma once

#include "Tests/Fakes/TemporaryFolder.hpp"

namespace ostrel {

/// A temporary host root with the scenario "protected" for the started programs; the destructor removes it.
class HostRootFolder {
 public:
  /// Whether the helper's reports stay the same or, when `changing`, contain times that follow the clock.
  enum class Reports { equal, changing };

  explicit HostRootFolder(Reports reports = Reports::equal);

  const std::string& path() const { return folder_.path(); }

 private:
  TemporaryFolder folder_;
};

}  // namespace ostrel
