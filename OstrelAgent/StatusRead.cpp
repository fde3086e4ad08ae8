#include "OstrelAgent/StatusRead.hpp"

#include <algorithm>

#include "OstrelAgent/Copy.hpp"

namespace ostrel {

StatusReading statusReading(std::int32_t status, std::string_view standardOutput) {
  StatusReading reading;
  if (status == 0) {
    if (const auto report = StatusReport::decode(standardOutput)) {
      reading.snapshot.fill(*report);
      if (report->reactivatePending.value_or(false)) {
        reading.reactivateVersion = report->reactivateVersion.value_or("");
      }
      return reading;
    }
  }
  // A report that cannot be read from a helper that ended well is told with the number 0.
  reading.snapshot.statusError = Copy::statusUnavailable.with(status);
  return reading;
}

StatusReading readStatus(const HelperRunner& helper, const ChildEnding& ending) {
  const auto output = helper.runHelperCapturingStdout({"status", "--json"}, ending);
  return statusReading(output.status, output.standardOutput);
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
