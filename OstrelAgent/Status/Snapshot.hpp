#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "OstrelAgent/Status/StatusReport.hpp"
#include "Platform/Date.hpp"

namespace ostrel {

/// The complete status of the device, from which every screen is made; built on every refresh.
struct Snapshot {
  /// A component of the report; absent values are empty.
  struct ComponentHealth {
    std::string state;
    std::string detail;
    std::string code;
    std::string severity;
    bool selfHealing = false;
    std::optional<Date> expectedClearBy;
    std::vector<std::string> params;

    bool operator==(const ComponentHealth&) const = default;
  };

  /// A missing trust setting and the ecosystems that it leaves unprotected.
  struct TrustGap {
    std::vector<std::string> ecosystems;
    std::string env;

    bool operator==(const TrustGap&) const = default;
  };

  struct GuardEcosystem {
    std::string name;
    std::string state;

    bool operator==(const GuardEcosystem&) const = default;
  };

  /// Over all transparent-proxy configurations: at least one exists, at least one is enabled.
  struct TransparentProxy {
    bool approved = false;
    bool enabled = false;

    bool operator==(const TransparentProxy&) const = default;
  };

  std::optional<std::string> statusError;
  bool daemonListening = false;
  bool caTrusted = false;
  bool caTrustPending = false;
  bool sysextActive = false;
  std::optional<TransparentProxy> transparentProxy;
  bool tokenPresent = false;
  bool tokenManaged = false;
  std::string tokenMasked;
  bool enrolled = false;
  std::string version;
  std::optional<StatusReport::Update> update;
  std::string verdict;
  std::int64_t offByPolicy = 0;
  ComponentHealth daemon;
  ComponentHealth deviceCA;
  ComponentHealth sysext;
  ComponentHealth runtimeTrust;
  ComponentHealth credential;
  ComponentHealth captureSet;
  ComponentHealth caExpiry;
  std::vector<std::string> uncoveredEcosystems;
  std::vector<TrustGap> trustGaps;
  bool egressLockEnabled = false;
  ComponentHealth egressLock;
  bool mdmEnrolled = false;
  std::vector<GuardEcosystem> guardEcosystems;
  std::string guardFeatureState;
  std::int64_t policyDirectFlows = 0;
  std::optional<Date> lastCheckinSuccess;
  std::string lastCheckinError;

  /// Copies everything from a report.
  void fill(const StatusReport& report);

  /// Copies a health block alone.
  void apply(const StatusReport::Health& health);

  /// Number of protections switched off by policy: the daemon's count or, without its verdict, the number of
  /// ecosystems marked so.
  std::int64_t offByPolicyCount() const;

  bool operator==(const Snapshot&) const = default;
};

/// The ecosystems of each trust setting, for daemons that do not report them.
namespace TrustGaps {

/// The ecosystems that a trust setting protects; empty for an unknown setting.
std::vector<std::string> legacyKnobProtects(std::string_view env);

}  // namespace TrustGaps

/// The network-extension facts of a snapshot as compact JSON with sorted keys.
std::string networkExtensionStates(const Snapshot& snapshot);

}  // namespace ostrel
