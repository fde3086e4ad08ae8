#include "Benchmarks/HostRootFolder.hpp"

#include <cstdlib>
#include <filesystem>

#include "Benchmarks/Process.hpp"

namespace ostrel {

HostRootFolder::HostRootFolder() {
  if (::mkdtemp(path_.data()) == nullptr) std::abort();
  ::setenv("OSTREL_HOST_ROOT", path_.c_str(), 1);
  medianRunMicroseconds({OSTREL_SIMULATED_ENDPOINT, "scenario", "protected"}, 1);
  // Between two check-ins a real endpoint tells the same again and again.
  medianRunMicroseconds(
      {OSTREL_SIMULATED_ENDPOINT, "set", "report.checkin.last_success", "2025-01-02T03:04:05Z"}, 1);
}

HostRootFolder::~HostRootFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

}  // namespace ostrel
