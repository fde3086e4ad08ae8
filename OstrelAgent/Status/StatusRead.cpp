#include "OstrelAgent/Status/StatusRead.hpp"

#include <algorithm>

#include "OstrelAgent/Text/Copy.hpp"

namespace ostrel {

namespace {

void addReport(StatusReading& reading, const HelperRunner::HelperOutput& helper) {
  if (helper.status == 0) {
    if (const auto report = StatusReport::decode(helper.standardOutput)) {
      reading.snapshot.fill(*report);
      if (report->reactivatePending.value_or(false)) {
        reading.reactivateVersion = report->reactivateVersion.value_or("");
      }
      return;
    }
  }
  // A report that cannot be read from a helper that ended well is told with the number 0.
  reading.snapshot.statusError = Copy::statusUnavailable.with(helper.status);
}

}  // namespace

StatusReading statusReading(const StatusInputs& sources) {
  StatusReading reading;
  addReport(reading, sources.helper);
  addTransparentProxies(reading.snapshot, sources.transparentProxies);
  addContentFilter(reading.snapshot, sources.contentFilter);
  return reading;
}

HelperRunner::HelperOutput runStatus(const HelperRunner& helper, const ChildStopTokens& ending) {
  return helper.runHelperCapturingStdout({"status", "--json"}, ending);
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

void SetupObservation::addReport(const StatusReport& report) {
  statusRead = true;
  enrolled = report.enrolled.value_or(false);
  caTrustPending = report.caTrustPending.value_or(false);
  daemonListening = report.daemonListening;
  if (!report.health) return;
  verdict = report.health->verdict.value_or("");
  if (!report.health->sysext) return;
  sysextState = report.health->sysext->state;
  sysextCode = report.health->sysext->code.value_or("");
}

SetupObservation readSetup(const HelperRunner& helper, const ChildStopTokens& ending) {
  SetupObservation observation;
  const auto run = runStatus(helper, ending);
  if (run.status != 0) return observation;
  if (const auto report = StatusReport::decode(run.standardOutput)) observation.addReport(*report);
  return observation;
}

SetupObservation withTransparentProxies(SetupObservation observation,
                                        const NetworkPreferences::TransparentProxies& loaded) {
  observation.sysextActive = isConnected(loaded);
  if (!loaded) return observation;
  observation.transparentProxyEnabled = std::ranges::any_of(*loaded, &TransparentProxyConfiguration::enabled);
  return observation;
}

}  // namespace ostrel
