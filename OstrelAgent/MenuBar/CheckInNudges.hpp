#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "OstrelAgent/Status/Snapshot.hpp"
#include "Platform/Clock.hpp"
#include "Platform/MainQueue.hpp"
#include "Platform/NetworkPath.hpp"
#include "Platform/SystemWake.hpp"

namespace ostrel {

/// The state of the network extension in the network preferences.
struct NetworkExtensionState {
  bool egressLock = false;
  bool sysext = false;
  std::optional<bool> proxy;  ///< a transparent proxy exists; absent when the proxies could not be read
  std::optional<bool> proxyApproved;  ///< one is enabled; likewise

  static NetworkExtensionState of(const Snapshot& snapshot);

  bool operator==(const NetworkExtensionState&) const = default;
};

/// Requests a check-in soon after a wake or a network change, once per burst of events and at most once a
/// minute, and at once after a change of the network extension. Main thread.
class CheckInNudges {
 public:
  static constexpr std::chrono::milliseconds quietTime{10000};    ///< from the latest event to the nudge
  static constexpr std::chrono::milliseconds maxBurst{30000};     ///< from the first event to the nudge
  static constexpr std::chrono::milliseconds minInterval{60000};  ///< from nudge to nudge

  enum class Event { wake, pathChange };

  struct Services {
    MainQueue& mainQueue;
    Clock& clock;
    NetworkPath& networkPath;
    SystemWake& systemWake;
  };

  CheckInNudges(Services services, std::function<void(const std::string& reason)> checkNow);

  /// Starts observing wakes and the network path. Call once.
  void start();

  /// Only an enrolled Mac is nudged.
  void setEnrolled(bool isEnrolled) { isEnrolled_ = isEnrolled; }

  /// Updates the state of the network extension; a change makes a nudge due.
  void nudgeOnNetworkExtensionChange(const NetworkExtensionState& state);

 private:
  void scheduleCheckinNudge(Event event);
  void pathChanged(bool satisfied, std::set<std::string> interfaces);
  void fire();

  Services services_;
  std::function<void(const std::string&)> checkNow_;
  bool isEnrolled_ = false;
  std::optional<NetworkExtensionState> lastNEState_;
  bool nudgeSawWake_ = false;
  bool pathSatisfied_ = false;
  bool seededPath_ = false;
  std::optional<std::set<std::string>> satisfiedInterfaces_;
  std::optional<Date> nudgeBurstStart_;
  std::optional<Date> lastNudgeFiredAt_;
  ScheduledWork wakeObserver_;
  ScheduledWork pathMonitor_;
  ScheduledWork nudgeWork_;
};

/// The interfaces that lead into a network. Tunnels, bridges and device-to-device links are left out, since
/// they appear and disappear on their own.
std::set<std::string> routableInterfaceNames(const std::vector<std::string>& interfaces);

/// True when an event follows the last nudge too soon, also when the clock was set back since.
bool isTooSoonToNudge(std::optional<Date> lastFired, Date now);

/// How long to wait from an event to the nudge of its burst.
std::chrono::milliseconds nudgeDelay(Date burstStart, Date now);

}  // namespace ostrel
