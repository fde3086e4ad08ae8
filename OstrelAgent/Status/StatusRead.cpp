#include "OstrelAgent/Status/StatusRead.hpp"

#include <algorithm>
#include <utility>

#include "OstrelAgent/Text/Copy.hpp"

namespace ostrel {

namespace {

/// True when one of the proxies is connected, including proxies that were loaded with an error.
bool isConnected(const NetworkPreferences::TransparentProxies& loaded) {
  return std::ranges::any_of(loaded ? *loaded : loaded.error().arrived,
                             &TransparentProxyConfiguration::connected);
}

bool isAnyEnabled(const NetworkPreferences::TransparentProxies& loaded) {
  return std::ranges::any_of(*loaded, &TransparentProxyConfiguration::enabled);
}

std::optional<StatusReport> reportOf(const HelperRunner::HelperOutput& answer) {
  if (answer.status != 0 || answer.standardOutput.size() > HelperReading::maxReportSize) return std::nullopt;
  auto report = StatusReport::decode(answer.standardOutput);
  return report ? std::optional(std::move(*report)) : std::nullopt;
}

void addReport(SetupObservation& observation, const StatusReport& report) {
  observation.statusRead = true;
  observation.enrolled = report.enrolled.value_or(false);
  observation.caTrustPending = report.caTrustPending.value_or(false);
  observation.daemonListening = report.daemonListening;
  if (!report.health) return;
  observation.verdict = report.health->verdict.value_or("");
  if (!report.health->sysext) return;
  observation.sysextState = report.health->sysext->state;
  observation.sysextCode = report.health->sysext->code.value_or("");
}

}  // namespace

std::shared_ptr<const HelperReading> readHelper(HelperRunner::HelperOutput answer,
                                                std::shared_ptr<const HelperReading> previous) {
  const bool isUnchanged =
      previous && previous->status == answer.status && previous->output == answer.standardOutput;
  if (isUnchanged) return previous;
  auto reading = std::make_shared<HelperReading>(HelperReading{.status = answer.status});
  reading->report = reportOf(answer);
  if (answer.standardOutput.size() <= HelperReading::maxKeptOutput) {
    reading->output = std::move(answer.standardOutput);
  }
  return reading;
}

HelperRunner::HelperOutput runStatus(const HelperRunner& helper, const ChildStopTokens& stopTokens) {
  return helper.runHelperCapturingStdout({"status", "--json"}, stopTokens);
}

Snapshot statusSnapshot(const StatusInputs& inputs) {
  Snapshot snapshot;
  if (inputs.helper->report) {
    snapshot.fill(*inputs.helper->report);
  } else {
    // A helper that succeeded without printing a report is shown with status 0.
    snapshot.statusError = Copy::statusUnavailable.with(inputs.helper->status);
  }
  if (const auto& proxies = inputs.transparentProxies) {
    snapshot.sysextActive = isConnected(*proxies);
    if (*proxies && !(*proxies)->empty()) {
      snapshot.transparentProxy = {.approved = true, .enabled = isAnyEnabled(*proxies)};
    }
  }
  const auto& filter = inputs.contentFilter;
  snapshot.egressLockEnabled = filter && *filter && (*filter)->hasProvider && (*filter)->enabled;
  return snapshot;
}

std::optional<std::string> pendingReactivation(const StatusInputs& inputs) {
  const auto& report = inputs.helper->report;
  if (!report || !report->reactivatePending.value_or(false)) return std::nullopt;
  return report->reactivateVersion.value_or("");
}

SetupObservation setupObservation(const StatusInputs& inputs) {
  SetupObservation observation;
  if (inputs.helper->report) addReport(observation, *inputs.helper->report);
  if (const auto& proxies = inputs.transparentProxies) {
    observation.sysextActive = isConnected(*proxies);
    if (*proxies) observation.transparentProxyEnabled = isAnyEnabled(*proxies);
  }
  return observation;
}

}  // namespace ostrel
