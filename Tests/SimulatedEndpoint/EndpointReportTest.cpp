#include "SimulatedEndpoint/EndpointReport.hpp"

#include <gtest/gtest.h>

#include "Platform/Posix/PosixFiles.hpp"
#include "SimulatedEndpoint/ScenarioFolder.hpp"

namespace ostrel::simulated {
namespace {

constexpr const char* now = "2026-01-02T03:04:05Z";

Json report(const std::string& name) {
  PosixFiles files([](std::string_view path) { return std::string(path); });
  return ScenarioFolder(files, SCENARIO_FOLDER).load(name).value().report();
}

SystemFacts facts(const char* extension, const char* proxies, const char* filter) {
  return SystemFacts::of(Json::parse(extension), Json::parse(proxies), Json::parse(filter));
}

constexpr const char* active = R"({"installed": "2", "enabled": true, "bundled": "2", "awaiting": null})";
constexpr const char* old = R"({"installed": "1", "enabled": true, "bundled": "2", "awaiting": null})";
constexpr const char* asked =
    R"({"installed": null, "enabled": false, "bundled": "2", "awaiting": "activation"})";
constexpr const char* on = R"([{"enabled": true, "connected": true}])";
constexpr const char* locked = R"({"provider": true, "enabled": true})";

TEST(EndpointReport, FollowsTheSystem) {
  struct Row {
    SystemFacts facts;
    const char* extensionCode;
    const char* lockCode;
    const char* verdict;
  };
  const Row rows[] = {
      {facts(active, on, locked), "SYSEXT_DIVERTING", "EGRESS_LOCK_ENFORCING", "protected"},
      {facts(active, R"([{"enabled": true, "connected": false}])", locked), "SYSEXT_IDLE",
       "EGRESS_LOCK_ENFORCING", "protected"},
      {facts(active, on, R"({"provider": true, "enabled": false})"), "SYSEXT_DIVERTING",
       "EGRESS_LOCK_CONFIGURATION_DISABLED", "degraded"},
      {facts(active, on, "{}"), "SYSEXT_DIVERTING", "EGRESS_LOCK_NOT_CONFIGURED", "degraded"},
      {facts(old, on, locked), "SYSEXT_LAGS_DAEMON", "EGRESS_LOCK_ENFORCING", "degraded"},
      {facts(active, "[]", locked), "SYSEXT_PROXY_DISABLED", "EGRESS_LOCK_ENFORCING", "not_protected"},
      {facts(asked, "[]", "{}"), "SYSEXT_WAITING_APPROVAL", "EGRESS_LOCK_NOT_CONFIGURED", "not_protected"},
      {facts("{}", "4", locked), "SYSEXT_INACTIVE", "EGRESS_LOCK_UNREPORTED", "not_protected"},
  };
  for (const auto& row : rows) {
    const auto after = reportAfterSystemChange(report("protected"), row.facts, "2");
    EXPECT_EQ(after["health"]["sysext"]["code"], row.extensionCode);
    EXPECT_EQ(after["health"]["egress_lock"]["code"], row.lockCode);
    EXPECT_EQ(after["health"]["verdict"], row.verdict) << row.extensionCode;
    EXPECT_EQ(after.contains("reactivate_version"), row.facts == facts(old, on, locked));
  }
}

TEST(EndpointReport, AFreshInstallBecomesProtectedStepByStep) {
  const auto verdict = [](const Json& each) {
    return reportAfterSystemChange(each, facts(active, on, locked), "2")["health"]["verdict"];
  };
  auto step = reportAfterInstall(report("fresh-install"));
  EXPECT_FALSE(step.contains("health"));
  EXPECT_EQ(verdict(step), "not_protected");
  step = reportAfterEnrolment(step, "zq_org_…4f21", now);
  EXPECT_EQ(step["ca_trust_pending"], true);
  EXPECT_EQ(verdict(step), "degraded");
  step = reportAfterTrust(step);
  EXPECT_EQ(verdict(step), "protected");
}

TEST(EndpointReport, VerdictsOfTheScenariosAreThoseOfTheirComponents) {
  PosixFiles files([](std::string_view path) { return std::string(path); });
  for (const auto& name : ScenarioFolder(files, SCENARIO_FOLDER).names()) {
    const auto before = report(name);
    if (!before.contains("health")) continue;
    EXPECT_EQ(reportAfterCheckin(before, now)["health"], before["health"]) << name;
  }
}

}  // namespace
}  // namespace ostrel::simulated
