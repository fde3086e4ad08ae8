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

/// What the network preferences showed of the egress lock and the transparent proxy. What is not known is
/// absent.
struct NetworkExtensionAssertion {
  bool egressLockExists = false;
  bool egressLockEnabled = false;
  std::optional<Snapshot::TransparentProxy> transparentProxy = {};
  std::optional<bool> mdmEnrolled = {};

  /// Compact JSON with sorted keys.
  std::string record(Date observedAt) const;
};

/// The small files in the person's Application Support folder by which the daemon and later runs see what was
/// done. Each is replaced in one step; one that cannot be written stays as it was. Any thread; copies are
/// equal.
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
