#include "OstrelAgent/MenuBar/DeviceManagementProbe.hpp"

namespace ostrel {

bool isEnrolledInDeviceManagement(ChildProcesses& childProcesses) {
  const auto result = childProcesses.run({.executable = "/usr/bin/profiles",
                                          .arguments = {"status", "-type", "enrollment"},
                                          .output = ChildStream::captured,
                                          .error = ChildStream::discarded});
  return result && result->output.contains("MDM enrollment: Yes");
}

}  // namespace ostrel
