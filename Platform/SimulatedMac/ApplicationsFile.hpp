#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Workspace.hpp"

namespace ostrel {

/// The applications and processes of the simulated Mac.
struct ApplicationsState {
  std::set<std::string> installed;  ///< bundle identifiers
  std::vector<RunningApplication> running;
  std::vector<std::string> processes;  ///< whole names of the commands

  bool operator==(const ApplicationsState&) const = default;
};

/// The state in the file `simulatedstate::applications`, without its damaged entries; empty when the bytes
/// are damaged. A launch time that cannot be read is absent.
ApplicationsState applicationsOfFile(std::string_view bytes);
std::string fileOfApplications(const ApplicationsState& state);

}  // namespace ostrel
