#include "OstrelAgent/Notifications/ContainerBlockNotificationGate.hpp"

#include <chrono>
#include <utility>

namespace ostrel {

namespace {

constexpr std::chrono::milliseconds repostInterval = std::chrono::seconds(86400);

}  // namespace

ContainerBlockNotificationGate::Outcome ContainerBlockNotificationGate::evaluate(
    const std::vector<std::string>& blocked, const std::set<std::string>& enabled,
    std::map<std::string, Date> lastPostedAt, Date now) {
  Outcome outcome{{}, std::move(lastPostedAt)};
  for (const auto& runtime : blocked) {
    if (!enabled.contains(runtime)) continue;
    const auto last = outcome.lastPostedAt.find(runtime);
    const bool wasToldOf = last != outcome.lastPostedAt.end();
    if (wasToldOf && last->second <= now && last->second > now - repostInterval) continue;
    outcome.post.push_back(runtime);
    outcome.lastPostedAt[runtime] = now;
  }
  return outcome;
}

}  // namespace ostrel
