#include "OstrelAgent/Status/StatusReport.hpp"

namespace ostrel {

// Not in an unnamed namespace: JsonReader finds them by argument-dependent lookup.

static void read(const JsonReader& reader, StatusReport::Update& update) {
  reader.required("state", update.state);
  reader.optional("latest_version", update.latestVersion);
  reader.optional("minimum_supported_version", update.minimumSupportedVersion);
}

static void read(const JsonReader& reader, StatusReport::Health::Component& component) {
  reader.required("state", component.state);
  reader.optional("detail", component.detail);
  reader.optional("code", component.code);
  reader.optional("severity", component.severity);
  reader.optional("self_healing", component.selfHealing);
  reader.optional("expected_clear_by", component.expectedClearBy);
  reader.optional("params", component.params);
}

static void read(const JsonReader& reader, StatusReport::Health::Knob& knob) {
  reader.required("env", knob.env);
  reader.required("ecosystem", knob.ecosystem);
  reader.optional("protects", knob.protects);
  reader.required("covered", knob.covered);
  reader.required("reason", knob.reason);
  reader.optional("evidence", knob.evidence);
  reader.optional("program", knob.program);
  reader.optional("last_seen", knob.lastSeen);
  reader.optional("file", knob.file);
}

static void read(const JsonReader& reader, StatusReport::Health::RuntimeTrust& trust) {
  read(reader, static_cast<StatusReport::Health::Component&>(trust));
  reader.optional("knobs", trust.knobs);
}

void read(const JsonReader& reader, StatusReport::Health& health) {
  reader.optional("daemon", health.daemon);
  reader.optional("ca", health.ca);
  reader.optional("sysext", health.sysext);
  reader.optional("runtime_trust", health.runtimeTrust);
  reader.optional("credential", health.credential);
  reader.optional("capture_set", health.captureSet);
  reader.optional("ca_expiry", health.caExpiry);
  reader.optional("egress_lock", health.egressLock);
  reader.optional("verdict", health.verdict);
  reader.optional("off_by_policy", health.offByPolicy);
}

static void read(const JsonReader& reader, StatusReport::Feature::Ecosystem& ecosystem) {
  reader.required("ecosystem", ecosystem.ecosystem);
  reader.required("capability", ecosystem.capability);
  reader.required("state", ecosystem.state);
}

static void read(const JsonReader& reader, StatusReport::Feature& feature) {
  reader.required("id", feature.id);
  reader.required("state", feature.state);
  reader.optional("ecosystems", feature.ecosystems);
}

static void read(const JsonReader& reader, StatusReport::Interception& interception) {
  reader.optional("policy_direct_flows", interception.policyDirectFlows);
}

static void read(const JsonReader& reader, StatusReport::Checkin& checkin) {
  reader.optional("last_success", checkin.lastSuccess);
  reader.optional("last_error", checkin.lastError);
}

void read(const JsonReader& reader, StatusReport& report) {
  reader.required("version", report.version);
  reader.required("ca_trusted", report.caTrusted);
  reader.required("token_present", report.tokenPresent);
  reader.required("token_managed", report.tokenManaged);
  reader.optional("token_masked", report.tokenMasked);
  reader.optional("enrolled", report.enrolled);
  reader.required("daemon_listening", report.daemonListening);
  reader.optional("reactivate_pending", report.reactivatePending);
  reader.optional("reactivate_version", report.reactivateVersion);
  reader.optional("ca_trust_pending", report.caTrustPending);
  reader.optional("update", report.update);
  reader.optional("health", report.health);
  reader.optional("features", report.features);
  reader.optional("interception", report.interception);
  reader.optional("checkin", report.checkin);
}

std::expected<StatusReport, JsonError> StatusReport::decode(std::string_view bytes) {
  const auto document = JsonObject::parse(bytes);
  if (!document) return std::unexpected(document.error());
  return document->as<StatusReport>();
}

}  // namespace ostrel
