#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "Platform/Files.hpp"
#include "Platform/NetworkPath.hpp"

namespace ostrel {

/// The calls of the system that can be ordered to fail.
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

/// Which requests for the system extension the person has to approve.
enum class ApprovalRule { never, whenNew, always };

/// What a developer has ordered of the simulated Mac, in the file `simulatedstate::overrides`; what it does
/// not hold, or holds damaged, is not ordered. Any thread and any number of processes.
class SimulatedOverrides {
 public:
  /// Real path of the lock's file.
  SimulatedOverrides(Files& files, std::string lockPath);

  /// What this call is to fail with, nothing when it is to go well. An order holds for a number of calls,
  /// over all processes, and this is one of them.
  [[nodiscard]] std::optional<PlatformError> takeFailure(FaultyCall call);

  /// "approval": "never", "new" or "always".
  ApprovalRule approvalRule() const;
  /// "result": "after-reboot".
  bool completesAfterReboot() const;
  /// "callbacks": "twice".
  bool repeatsCallbacks() const;
  /// "network": the names of the interfaces that it can be reached by, none while it is down.
  std::optional<NetworkPathUpdate> networkPath() const;
  /// "wake": the time of the latest, in milliseconds of the epoch.
  std::optional<std::int64_t> latestWake() const;

 private:
  std::string word(const char* name) const;

  Files& files_;
  const std::string lockPath_;
};

}  // namespace ostrel
