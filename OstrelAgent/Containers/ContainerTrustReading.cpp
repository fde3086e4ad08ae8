#include "OstrelAgent/Containers/ContainerTrustReading.hpp"

#include <algorithm>
#include <functional>
#include <tuple>
#include <utility>

namespace ostrel {

namespace {

std::tuple<bool, bool, bool> rankOf(const ContainerTrustReading::Row& row) {
  return {row.blocked, row.running, row.installed};
}

}  // namespace

ContainerTrustReading::ContainerTrustReading(std::optional<ContainerBlock> currentBlock, Detected detected)
    : block(std::move(currentBlock)),
      dockerSharesLibrary(detected.dockerSharesLibrary),
      bundlePEM(std::move(detected.bundlePEM)) {
  for (const auto& runtime : ContainerRuntime::table) {
    const std::string name(runtime.name);
    const bool isRunning = detected.running.contains(name);
    const Row row{.runtime = runtime,
                  .installed = isRunning || detected.installed.contains(name),
                  .running = isRunning,
                  .blocked = block && std::ranges::count(block->runtimes, name) > 0,
                  .needsRestart = detected.needsRestart.contains(name)};
    // Behind its equals, which keeps the table's order among them.
    rows.insert(std::ranges::upper_bound(rows, rankOf(row), std::greater(), rankOf), row);
  }
}

}  // namespace ostrel
