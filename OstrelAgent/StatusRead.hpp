#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "OstrelAgent/HelperRunner.hpp"
#include "OstrelAgent/Snapshot.hpp"
#include "Platform/NetworkPreferences.hpp"

namespace ostrel {

/// What one run of the helper tells.
struct StatusReading {
  Snapshot snapshot;
  /// The version for which the extension is to be re-activated, empty when it is not said; absent when none
  /// is to be.
  std::optional<std::string> reactivateVersion = {};

  bool operator==(const StatusReading&) const = default;
};

/// The reading of a helper run: filled from its report, or with `statusError` alone when the helper failed
/// or printed no report.
StatusReading statusReading(std::int32_t status, std::string_view standardOutput);

/// Runs the helper for its status report. Blocks.
StatusReading readStatus(const HelperRunner& helper, const ChildEnding& ending = {});

/// True when the extension diverts traffic by one of the proxies, of those too that came with an error.
bool isConnected(const NetworkPreferences::TransparentProxies& loaded);

/// Adds what the network preferences say. What was not loaded keeps its default.
void addTransparentProxies(Snapshot& snapshot, const NetworkPreferences::TransparentProxies& loaded);
void addContentFilter(Snapshot& snapshot, const NetworkPreferences::ContentFilter& loaded);

}  // namespace ostrel
