#include "Benchmarks/HostRootFolder.hpp"

#include <cstdlib>

#include "Benchmarks/Process.hpp"

namespace ostrel {

HostRootFolder::HostRootFolder(Reports reports) {
  ::setenv("OSTREL_HOST_ROOT", path().c_str(), 1);
  medianRunMicroseconds({OSTREL_SIMULATED_ENDPOINT, "scenario", "protected"}, 1);
  if (reports == Reports::changing) return;
  // A real endpoint reports the same times between two check-ins; the scenario's times follow the clock.
  for (const char* time :
       {"checkin.last_success", "health.runtime_trust.knobs.0.last_seen",
        "health.runtime_trust.knobs.1.last_seen", "health.runtime_trust.knobs.2.last_seen"}) {
    medianRunMicroseconds(
        {OSTREL_SIMULATED_ENDPOINT, "set", std::string("report.") + time, "2025-01-02T03:04:05Z"}, 1);
  }
}

}  // namespace ostrel
