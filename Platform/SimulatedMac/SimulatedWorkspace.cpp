#include "Platform/SimulatedMac/SimulatedWorkspace.hpp"

namespace ostrel {

std::vector<RunningApplication> SimulatedWorkspace::runningApplications() const {
  return applications_.current()->running;
}

bool SimulatedWorkspace::hasApplication(const std::string& bundleIdentifier) const {
  return applications_.current()->installed.contains(bundleIdentifier);
}

bool SimulatedWorkspace::hasApplicationWithPrefix(const std::string& prefix) const {
  const auto state = applications_.current();
  const auto first = state->installed.lower_bound(prefix);
  return first != state->installed.end() && first->starts_with(prefix);
}

}  // namespace ostrel
