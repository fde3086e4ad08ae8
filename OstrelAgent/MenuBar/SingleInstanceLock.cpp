#include "OstrelAgent/MenuBar/SingleInstanceLock.hpp"

#include <utility>

namespace ostrel {

std::optional<SingleInstance::Claim> claimMenuBar(SingleInstance& instance, StandardStreams& streams,
                                                  Log& log) {
  auto claim = instance.claim(earlierMenuBarTimeout);
  if (!claim) {
    log.line("ostrel: cannot tell whether the menu-bar agent is running already: " +
             claim.error().description);
    return SingleInstance::Claim();
  }
  if (*claim) return std::move(*claim);
  streams.writeError("the menu-bar agent is running already\n");
  return std::nullopt;
}

}  // namespace ostrel
