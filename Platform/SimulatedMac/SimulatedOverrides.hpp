#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "Platform/Files.hpp"
#include "Platform/NetworkPath.hpp"
#include "Platform/UserNotifications.hpp"

namespace ostrel {

/// The system calls that an override can make fail.
enum class FaultyCall { loadProxies, saveProxy, startProxy, removeProxy, loadFilter, saveFilter, request };

struct FaultyCallName {
  std::string_view name;  ///< in the file of overrides
  FaultyCall call;
};

inline constexpr std::array faultyCallNames = {
    FaultyCallName{"fail-loads", FaultyCall::loadProxies},
    FaultyCallName{"fail-saves", FaultyCall::saveProxy},
    FaultyCallName{"fail-start", FaultyCall::startProxy},
    FaultyCallName{"fail-removals", FaultyCall::removeProxy},
    FaultyCallName{"fail-filter-loads", FaultyCall::loadFilter},
    FaultyCallName{"fail-filter-saves", FaultyCall::saveFilter},
    FaultyCallName{"fail-requests", FaultyCall::request},
};

/// Which requests for the system extension the user has to approve.
enum class ApprovalRule { never, whenNew, always };

/// A developer's overrides for the simulated Mac, in the file `simulatedstate::overrides`; missing and
/// damaged entries have no effect. Any thread, any number of processes.
class SimulatedOverrides {
 public:
  /// Takes the real path of the lock file.
  SimulatedOverrides(Files& files, std::string lockPath);

  /// The error that this call must fail with, or nullopt. An override holds for a number of calls over all
  /// processes; this call uses one up.
  [[nodiscard]] std::optional<PlatformError> takeFailure(FaultyCall call);

  /// "approval": "never", "new" or "always".
  ApprovalRule approvalRule() const;
  /// "result": "after-reboot".
  bool completesAfterReboot() const;
  /// "callbacks": "twice".
  bool repeatsCallbacks() const;
  /// "network": the names of the usable interfaces, empty while the network is down.
  std::optional<NetworkPathUpdate> networkPath() const;
  /// "wake": time of the latest wake, in milliseconds since the epoch.
  std::optional<std::int64_t> latestWake() const;
  /// "notifications": "authorized", "denied" or "undetermined".
  std::optional<NotificationAuthorization> notificationAuthorization() const;

 private:
  std::string word(const char* name) const;

  Files& files_;
  const std::string lockPath_;
};

}  // namespace ostrel
