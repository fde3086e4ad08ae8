#include "OstrelAgent/Containers/ContainerBlock.hpp"

#include <algorithm>
#include <iterator>

#include "OstrelAgent/Text/Copy.hpp"

namespace ostrel {

std::optional<ContainerBlock> ContainerBlock::read(const Snapshot::ComponentHealth& runtimeTrust) {
  if (runtimeTrust.code != "CONTAINER_REJECTED_LEAF") return std::nullopt;
  ContainerBlock block{{}, runtimeTrust.expectedClearBy};
  std::ranges::copy_if(runtimeTrust.params, std::back_inserter(block.runtimes),
                       [](const auto& runtime) { return !runtime.empty(); });
  if (block.runtimes.empty()) return std::nullopt;
  return block;
}

std::string ContainerBlock::text() const {
  return Copy::guardContainersBlockedIn.with(Copy::listJoined(runtimes));
}

}  // namespace ostrel
