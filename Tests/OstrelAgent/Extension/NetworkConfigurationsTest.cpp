#include "OstrelAgent/Extension/NetworkConfigurations.hpp"

#include <gtest/gtest.h>

#include "Tests/Fakes/FakeHost.hpp"

namespace ostrel {
namespace {

constexpr const char* captureJson =
    R"({"captured_hosts":["pypi.org"],"daemon_addr":"127.0.0.1:65531","schema_version":1})";

struct NetworkConfigurationsTest : testing::Test {
  FakeHost host;
  NetworkConfigurations configurations{host.networkPreferences, host.mainQueue, host.log,
                                       Records(host.files, host.clock, host.userAccount)};
};

TEST_F(NetworkConfigurationsTest, OnlyTheFirstOfTwoProxiesIsPointedAtTheExtension) {
  const TransparentProxyConfiguration first{
      .enabled = false,
      .connected = false,
      .identifier = "a",
      .providerBundleIdentifier = "another",
      .serverAddress = "another",
      .providerConfiguration = "{}",
      .localizedDescription = "another",
      .onDemandRules = {{OnDemandRule::Action::disconnect, OnDemandRule::InterfaceType::cellular}, {}},
      .onDemandEnabled = false};
  auto second = first;
  second.identifier = "b";
  for (const bool isNew : {false, true}) {
    host.networkPreferences.transparentProxies->clear();
    if (!isNew) host.networkPreferences.transparentProxies = {first, second};
    bool isSaved = false;
    configurations.saveTransparentProxyConfiguration(
        {.capturedHosts = {"pypi.org"}}, [&isSaved](const auto& result) { isSaved = result.has_value(); });
    EXPECT_TRUE(host.mainQueue.isWorkDue() && !isSaved) << "continues in the main queue, not inside the call";
    host.mainQueue.runAll();
    EXPECT_TRUE(isSaved);
    auto proxies = *host.networkPreferences.transparentProxies;
    ASSERT_EQ(proxies.size(), isNew ? 1U : 2U);
    if (!isNew) {
      EXPECT_EQ(proxies[1], second);
    }
    EXPECT_EQ(proxies[0],
              (TransparentProxyConfiguration{
                  .enabled = true,
                  .connected = true,
                  .identifier = isNew ? proxies[0].identifier : "a",
                  .providerBundleIdentifier = "tech.brenn.ostrel-agent.sysext",
                  .serverAddress = "Ostrel Guard",
                  .providerConfiguration = captureJson,
                  .localizedDescription = "Ostrel Agent",
                  .onDemandRules = {{OnDemandRule::Action::connect, OnDemandRule::InterfaceType::any}},
                  .onDemandEnabled = true}));
  }
}

TEST_F(NetworkConfigurationsTest, TheAppliedCaptureIsRecordedOnceTheProxyHasStarted) {
  const auto path =
      host.userAccount.homeFolder + "/Library/Application Support/ostrel-agent-endpoint/applied-capture.json";
  host.networkPreferences.isDeferred = true;
  bool isSaved = false;
  configurations.saveTransparentProxyConfiguration(
      {.capturedHosts = {"pypi.org"}}, [&isSaved](const auto& result) { isSaved = result.has_value(); });
  for (int stage = 0; stage < 3; ++stage) {
    EXPECT_FALSE(isSaved || host.files.exists(path)) << stage;
    host.networkPreferences.completeNext();
    host.mainQueue.runAll();
  }
  EXPECT_TRUE(isSaved);
  EXPECT_EQ(host.files.read(path), R"({"applied_at":"2025-01-02T00:00:00Z","captured_hosts":["pypi.org"],)"
                                   R"("daemon_addr":"127.0.0.1:65531","schema_version":1})");
}

TEST_F(NetworkConfigurationsTest, TheEgressLockReplacesTheOneFilter) {
  host.networkPreferences.contentFilter =
      ContentFilterConfiguration{.hasProvider = false,
                                 .enabled = false,
                                 .filterSockets = false,
                                 .filterPackets = true,
                                 .dataProviderBundleIdentifier = "another",
                                 .localizedDescription = "another"};
  bool isSaved = false;
  configurations.saveEgressLockConfiguration(
      [&isSaved](const auto& result) { isSaved = result.has_value(); });
  EXPECT_FALSE(isSaved) << "continues in the main queue, not inside the call";
  host.mainQueue.runAll();
  EXPECT_TRUE(isSaved);
  EXPECT_EQ(host.networkPreferences.contentFilter,
            (ContentFilterConfiguration{.hasProvider = true,
                                        .enabled = true,
                                        .filterSockets = true,
                                        .filterPackets = false,
                                        .dataProviderBundleIdentifier = "tech.brenn.ostrel-agent.sysext",
                                        .localizedDescription = "Ostrel Agent — Egress Lock"}));
}

}  // namespace
}  // namespace ostrel
