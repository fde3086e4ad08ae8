#include "Benchmarks/HostRootFolder.hpp"

#include <cstdlib>

#include "Benchmarks/Process.hpp"

namespace ostrel {

HostRootFolder::HostRootFolder() {
  ::setenv("OSTREL_HOST_ROOT", path().c_str(), 1);
  medianRunMicroseconds({OSTREL_SIMULATED_ENDPOINT, "scenario", "protected"}, 1);
  // Between two check-ins a real endpoint tells the same again and again.
  medianRunMicroseconds(
      {OSTREL_SIMULATED_ENDPOINT, "set", "report.checkin.last_success", "2025-01-02T03:04:05Z"}, 1);
}

}  // namespace ostrel
