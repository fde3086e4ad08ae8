#include <algorithm>
#include <array>
#include <cstdio>
#include <span>
#include <string>
#include <string_view>

#include "Platform/Posix/PosixFiles.hpp"
#include "SimulatedEndpoint/SimulatedState.hpp"

int main(int argc, char** argv) {
  using namespace ostrel;
  constexpr std::array<std::string_view, 3> wanted = {"status", "-type", "enrollment"};
  if (!std::ranges::equal(std::span(argv + (argc > 0 ? 1 : 0), argv + argc), wanted)) {
    std::fputs("usage: profiles status -type enrollment\n", stderr);
    return 1;
  }
  PosixFiles files([](std::string_view path) { return std::string(path); });
  const auto isManaged = simulated::SimulatedState(files, HostRoot::fromEnvironment("")).isDeviceManaged();
  if (!isManaged) {
    std::fprintf(stderr, "profiles: %s\n", isManaged.error().c_str());
    return 1;
  }
  std::printf("Enrolled via DEP: No\nMDM enrollment: %s\n", *isManaged ? "Yes (User Approved)" : "No");
  return 0;
}
