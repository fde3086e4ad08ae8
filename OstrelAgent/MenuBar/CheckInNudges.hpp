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

/// What the system says of the network extension.
struct NetworkExtensionState {
  bool egressLock = false;
  bool sysext = false;
  std::optional<bool> proxy;          ///< a transparent proxy is set up; absent where none could be read
  std::optional<bool> proxyApproved;  ///< and one is enabled; likewise

  static NetworkExtensionState of(const Snapshot& snapshot);

  bool operator==(const NetworkExtensionState&) const = default;
};

/// Asks for a check-in soon after a wake or a change of network, one for each burst of events and at most one
/// a minute, and at once after a change of the network extension. Main thread.
class CheckInNudges {
 public:
  static constexpr std::chrono::milliseconds quietTime{10000};     ///< from the latest event to the nudge
  static constexpr std::chrono::milliseconds longestBurst{30000};  ///< from the first event to the nudge
  static constexpr std::chrono::milliseconds minInterval{60000};   ///< from nudge to nudge

  enum class Event { wake, pathChange };

  struct Services {
    MainQueue& mainQueue;
    Clock& clock;
    NetworkPath& networkPath;
    SystemWake& systemWake;
  };

  CheckInNudges(Services services, std::function<void(const std::string& reason)> checkNow);

  /// Starts to follow wakes and the network path. Call once.
  void start();

  /// Only an enrolled Mac is nudged.
  void setEnrolled(bool isEnrolled) { isEnrolled_ = isEnrolled; }

  /// Takes the latest state of the network extension; a nudge is due when it has changed.
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

/// Those of the interfaces that lead into a network: not tunnels, bridges and links between devices, which
/// come and go by themselves.
std::set<std::string> routableInterfaceNames(const std::vector<std::string>& interfaces);

/// True while an event comes too soon after a nudge. A clock that was set back counts as too soon.
bool isTooSoonToNudge(std::optional<Date> lastFired, Date now);

/// How long to wait from an event to the nudge of its burst.
std::chrono::milliseconds nudgeDelay(Date burstStart, Date now);

}  // namespace ostrel
