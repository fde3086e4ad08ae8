#include "SimulatedEndpoint/EndpointReport.hpp"

#include <algorithm>
#include <initializer_list>
#include <utility>

#include "SimulatedEndpoint/Scenario.hpp"

namespace ostrel::simulated {

namespace {

const Json ok = {{"state", "ok"}};

Json component(const char* state, const char* code, const char* severity = nullptr) {
  Json json = {{"state", state}, {"code", code}};
  if (severity != nullptr) json["severity"] = severity;
  return json;
}

bool hasHealth(const Json& report) { return report.contains("health") && report["health"].is_object(); }

bool isTrue(const Json& report, const char* key) { return report.contains(key) && report[key] == true; }

bool hasSeverity(const Json& health, const char* severity) {
  return std::ranges::any_of(health, [severity](const Json& each) {
    return each.is_object() && each.contains("severity") && each["severity"] == severity;
  });
}

bool isPastItsEnd(const Json& report) {
  const Json::json_pointer state("/update/state");
  return report.contains(state) && report[state] == "eol";
}

Json withVerdict(Json report) {
  if (!hasHealth(report)) return report;
  auto& health = report["health"];
  if (!health.contains("verdict") || !health["verdict"].is_string()) return report;
  const bool isDegraded = hasSeverity(health, "yellow") || isPastItsEnd(report);
  health["verdict"] = hasSeverity(health, "red") ? "not_protected" : isDegraded ? "degraded" : "protected";
  return report;
}

void setComponent(Json& report, const char* name, const Json& value) {
  if (hasHealth(report)) report["health"][name] = value;
}

/// The report of an endpoint that has looked at everything: a fresh one has not reported its health yet.
Json whole(Json report) {
  const auto model = Scenario::initial();
  if (hasHealth(report) || !model) return report;
  report["health"] = model->report()["health"];
  if (!isTrue(report, "ca_trusted")) {
    report["health"]["ca"] = component("broken", "CA_TRUST_PENDING", "yellow");
  }
  if (!isTrue(report, "enrolled")) {
    report["health"]["credential"] = component("broken", "CREDENTIAL_NOT_ENROLLED", "red");
    return report;
  }
  for (const auto* key : {"update", "features", "interception"}) {
    if (!report.contains(key)) report[key] = model->report()[key];
  }
  return report;
}

Json extensionComponent(const SystemFacts& facts) {
  if (!facts.isActive && facts.awaitsApproval) return component("broken", "SYSEXT_WAITING_APPROVAL", "red");
  if (!facts.isActive) return component("broken", "SYSEXT_INACTIVE", "red");
  if (!facts.isProxyEnabled) return component("broken", "SYSEXT_PROXY_DISABLED", "red");
  if (!facts.isCurrent) return component("broken", "SYSEXT_LAGS_DAEMON", "yellow");
  return component("ok", facts.isProxyConnected ? "SYSEXT_DIVERTING" : "SYSEXT_IDLE");
}

Json filterComponent(const SystemFacts& facts) {
  if (!facts.hasFilter) return component("off", "EGRESS_LOCK_NOT_CONFIGURED", "yellow");
  if (!facts.isActive) return component("unknown", "EGRESS_LOCK_UNREPORTED", "info");
  if (!facts.isFilterEnabled) return component("broken", "EGRESS_LOCK_CONFIGURATION_DISABLED", "yellow");
  return component("ok", "EGRESS_LOCK_ENFORCING");
}

}  // namespace

Json reportAfterSystemChange(Json report, const SystemFacts& facts, const std::string& bundledVersion) {
  report = whole(std::move(report));
  const bool isOld = facts.isActive && !facts.isCurrent;
  report["reactivate_pending"] = isOld;
  report.erase("reactivate_version");
  if (isOld) report["reactivate_version"] = bundledVersion;
  const bool isCapturing = facts.isActive && facts.isProxyEnabled;
  setComponent(report, "sysext", extensionComponent(facts));
  setComponent(report, "capture_set",
               isCapturing ? ok : component("unknown", "CAPTURE_SET_UNREPORTED", "info"));
  setComponent(report, "egress_lock", filterComponent(facts));
  return withVerdict(std::move(report));
}

Json reportAfterInstall(Json report) {
  report["daemon_listening"] = true;
  setComponent(report, "daemon", ok);
  return withVerdict(std::move(report));
}

Json reportAfterEnrolment(Json report, const std::string& maskedToken, const std::string& now) {
  report["token_present"] = true;
  report["token_masked"] = maskedToken;
  report["enrolled"] = true;
  report["ca_trust_pending"] = !isTrue(report, "ca_trusted");
  setComponent(report, "credential", ok);
  return reportAfterCheckin(std::move(report), now);
}

Json reportAfterTrust(Json report) {
  report["ca_trusted"] = true;
  report["ca_trust_pending"] = false;
  setComponent(report, "ca", ok);
  return withVerdict(std::move(report));
}

Json reportAfterCheckin(Json report, const std::string& now) {
  report["checkin"] = {{"last_success", now}};
  return withVerdict(std::move(report));
}

Json reportAfterUpdate(Json report, const std::string& version) {
  report["version"] = version;
  if (!report.contains("update") || !report["update"].is_object()) report["update"] = Json::object();
  report["update"]["state"] = "current";
  report["update"]["latest_version"] = version;
  return withVerdict(std::move(report));
}

}  // namespace ostrel::simulated
