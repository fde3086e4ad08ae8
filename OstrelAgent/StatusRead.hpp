#pragma once

#include <cstdint>
#include <string_view>

#include "OstrelAgent/HelperRunner.hpp"
#include "OstrelAgent/Snapshot.hpp"
#include "Platform/NetworkPreferences.hpp"

namespace ostrel {

/// The snapshot of a helper run: filled from its report, or with `statusError` alone when the helper failed
/// or printed no report.
Snapshot snapshotOfStatus(std::int32_t status, std::string_view standardOutput);

/// Runs the helper for its status report. Blocks.
Snapshot readStatus(const HelperRunner& helper, const ChildEnding& ending = {});

/// True when the extension diverts traffic by one of the proxies, of those too that came with an error.
bool isConnected(const NetworkPreferences::TransparentProxies& loaded);

/// Adds what the network preferences say. What was not loaded keeps its default.
void addTransparentProxies(Snapshot& snapshot, const NetworkPreferences::TransparentProxies& loaded);
void addContentFilter(Snapshot& snapshot, const NetworkPreferences::ContentFilter& loaded);

}  // namespace ostrel
