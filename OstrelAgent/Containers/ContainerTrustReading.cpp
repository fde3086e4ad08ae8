#include "OstrelAgent/Containers/ContainerTrustReading.hpp"

#include <algorithm>
#include <functional>
#include <tuple>
#include <utility>

namespace ostrel {

ContainerTrustReading::ContainerTrustReading(std::optional<ContainerBlock> currentBlock, Detected detected)
    : block(std::move(currentBlock)),
      dockerSharesLibrary(detected.dockerSharesLibrary),
      bundlePEM(std::move(detected.bundlePEM)) {
  for (const auto& runtime : ContainerRuntime::table) {
    const std::string name(runtime.name);
    const bool isRunning = detected.running.contains(name);
    rows.push_back({.runtime = runtime,
                    .installed = isRunning || detected.installed.contains(name),
                    .running = isRunning,
                    .blocked = block && std::ranges::count(block->runtimes, name) > 0,
                    .needsRestart = detected.needsRestart.contains(name)});
  }
  std::ranges::stable_sort(rows, std::greater(), [](const Row& row) {
    return std::tuple(row.blocked, row.running, row.installed);
  });
}

}  // namespace ostrel
