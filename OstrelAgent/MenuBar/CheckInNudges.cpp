#include "OstrelAgent/MenuBar/CheckInNudges.hpp"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

namespace ostrel {

namespace {

constexpr std::string_view unroutablePrefixes[] = {"utun", "awdl", "llw", "bridge", "vmenet", "ap", "ipsec"};

bool isRoutable(std::string_view interface) {
  return std::ranges::none_of(unroutablePrefixes,
                              [&](std::string_view prefix) { return interface.starts_with(prefix); });
}

}  // namespace

NetworkExtensionState NetworkExtensionState::of(const Snapshot& snapshot) {
  NetworkExtensionState state;
  state.egressLock = snapshot.egressLockEnabled;
  state.sysext = snapshot.sysextActive;
  if (const auto& proxy = snapshot.transparentProxy) {
    state.proxy = proxy->approved;
    state.proxyApproved = proxy->enabled;
  }
  return state;
}

std::set<std::string> routableInterfaceNames(const std::vector<std::string>& interfaces) {
  std::set<std::string> names;
  std::ranges::copy_if(interfaces, std::inserter(names, names.end()), isRoutable);
  return names;
}

bool isTooSoonToNudge(std::optional<Date> lastFired, Date now) {
  return lastFired && now - *lastFired < CheckInNudges::minInterval;
}

std::chrono::milliseconds nudgeDelay(Date burstStart, Date now) {
  const std::chrono::milliseconds rest = burstStart + CheckInNudges::maxBurst - now;
  return std::min(CheckInNudges::quietTime, std::max(rest, std::chrono::milliseconds(0)));
}

CheckInNudges::CheckInNudges(Services services, std::function<void(const std::string& reason)> checkNow)
    : services_(services), checkNow_(std::move(checkNow)) {}

void CheckInNudges::start() {
  wakeObserver_ = services_.systemWake.observe([this] { scheduleCheckinNudge(Event::wake); });
  pathMonitor_ = services_.networkPath.observe([this](const NetworkPathUpdate& update) {
    pathChanged(update.satisfied, routableInterfaceNames(update.interfaces));
  });
}

void CheckInNudges::nudgeOnNetworkExtensionChange(const NetworkExtensionState& state) {
  const auto earlier = std::exchange(lastNEState_, state);
  if (earlier && *earlier != state && isEnrolled_) checkNow_("network");
}

void CheckInNudges::pathChanged(bool satisfied, std::set<std::string> interfaces) {
  pathSatisfied_ = satisfied;
  const bool isFirst = !std::exchange(seededPath_, true);
  if (!satisfied) return satisfiedInterfaces_.reset();
  const auto previous = std::exchange(satisfiedInterfaces_, std::move(interfaces));
  if (!isFirst && previous != satisfiedInterfaces_) scheduleCheckinNudge(Event::pathChange);
}

void CheckInNudges::scheduleCheckinNudge(Event event) {
  const auto now = services_.clock.now();
  if (isTooSoonToNudge(lastNudgeFiredAt_, now)) return;
  if (event == Event::wake) nudgeSawWake_ = true;
  // A start in the future means that the clock was set back since.
  if (!nudgeBurstStart_ || *nudgeBurstStart_ > now) nudgeBurstStart_ = now;
  nudgeWork_ = services_.mainQueue.after(nudgeDelay(*nudgeBurstStart_, now), [this] { fire(); });
}

void CheckInNudges::fire() {
  const std::string reason = std::exchange(nudgeSawWake_, false) ? "wake" : "network";
  nudgeWork_ = nullptr;
  nudgeBurstStart_.reset();
  if (!pathSatisfied_ || !isEnrolled_) return;
  lastNudgeFiredAt_ = services_.clock.now();
  checkNow_(reason);
}

}  // namespace ostrel
