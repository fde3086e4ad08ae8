#include "OstrelAgent/StatusRead.hpp"

#include <algorithm>

#include "OstrelAgent/Copy.hpp"

namespace ostrel {

Snapshot snapshotOfStatus(std::int32_t status, std::string_view standardOutput) {
  Snapshot snapshot;
  if (status == 0) {
    if (const auto report = StatusReport::decode(standardOutput)) {
      snapshot.fill(*report);
      return snapshot;
    }
  }
  // A report that cannot be read from a helper that ended well is told with the number 0.
  snapshot.statusError = Copy::statusUnavailable.with(status);
  return snapshot;
}

Snapshot readStatus(const HelperRunner& helper, const ChildEnding& ending) {
  const auto output = helper.runHelperCapturingStdout({"status", "--json"}, ending);
  return snapshotOfStatus(output.status, output.standardOutput);
}

bool isConnected(const NetworkPreferences::TransparentProxies& loaded) {
  return std::ranges::any_of(loaded ? *loaded : loaded.error().arrived,
                             &TransparentProxyConfiguration::connected);
}

void addTransparentProxies(Snapshot& snapshot, const NetworkPreferences::TransparentProxies& loaded) {
  snapshot.sysextActive = isConnected(loaded);
  if (!loaded || loaded->empty()) return;
  snapshot.transparentProxy = Snapshot::TransparentProxy{
      .approved = true, .enabled = std::ranges::any_of(*loaded, &TransparentProxyConfiguration::enabled)};
}

void addContentFilter(Snapshot& snapshot, const NetworkPreferences::ContentFilter& loaded) {
  snapshot.egressLockEnabled = loaded && loaded->hasProvider && loaded->enabled;
}

}  // namespace ostrel
