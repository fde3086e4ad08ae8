#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "OstrelAgent/Extension/CaptureConfig.hpp"
#include "OstrelAgent/Status/Snapshot.hpp"
#include "Platform/Clock.hpp"
#include "Platform/Files.hpp"
#include "Platform/UserAccount.hpp"

namespace ostrel {

/// The state of egress lock and transparent proxy in the network preferences; unknown values are absent.
struct NetworkExtensionAssertion {
  bool egressLockExists = false;
  bool egressLockEnabled = false;
  std::optional<Snapshot::TransparentProxy> transparentProxy = {};
  std::optional<bool> mdmEnrolled = {};

  /// Compact JSON with sorted keys.
  std::string record(Date observedAt) const;
};

/// Small files in the user's Application Support folder that record for the daemon and later runs what was
/// done. Each is replaced atomically; on a failed write the old file stays. Any thread; copies are
/// interchangeable.
class Records {
 public:
  Records(Files& files, const Clock& clock, const UserAccount& account);

  void recordAppliedCapture(const CaptureConfig& captureConfig) const;
  void recordNetworkExtensionAssertion(const NetworkExtensionAssertion& assertion) const;

  /// The version for which the extension was last re-activated; empty when none is known.
  std::string reactivatedVersion() const;
  void recordReactivated(std::string_view version) const;

 private:
  void write(const std::string& name, std::string_view bytes) const;

  Files* files_;
  const Clock* clock_;
  std::string folder_;
};

}  // namespace ostrel
