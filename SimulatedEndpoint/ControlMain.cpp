#include <cstdio>
#include <filesystem>
#include <system_error>
#include <vector>

#include "Platform/Posix/PosixFiles.hpp"
#include "SimulatedEndpoint/Control.hpp"
#include "SimulatedEndpoint/Serve.hpp"

int main(int argc, char** argv) {
  using namespace ostrel;
  using namespace ostrel::simulated;
  std::error_code error;
  const auto folder = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
  if (error) {
    std::fprintf(stderr, "simulated-endpoint: cannot find its own folder: %s\n", error.message().c_str());
    return 1;
  }
  const std::vector<std::string> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
  PosixFiles files([](std::string_view path) { return std::string(path); });
  const ScenarioFolder scenarios(files, folder / "Scenarios");
  const SimulatedState state(files, HostRoot::fromEnvironment(""));
  if (arguments == std::vector<std::string>{"serve"}) return serve(files, state, folder);
  const auto result =
      runControl(arguments, {.files = files, .folder = scenarios, .state = state, .toolFolder = folder});
  std::fputs(result.text.c_str(), result.status == 0 ? stdout : stderr);
  return result.status;
}
