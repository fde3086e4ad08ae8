#include "OstrelAgent/Status/StatusRead.hpp"

#include <gtest/gtest.h>

#include "Tests/OstrelAgent/ReportText.hpp"

namespace ostrel {
namespace {

StatusInputs inputsOf(std::int32_t status, const std::string& output) {
  return {.helper = readHelper({status, output}, nullptr)};
}

const PlatformError loadError{"NEVPNErrorDomain", 5, "not readable"};

TEST(StatusRead, OnlyTheReportOfASuccessfulHelperIsRead) {
  struct Row {
    std::int32_t status;
    std::string output;
    const char* error;
  };
  const auto report = reportText();
  const Row rows[] = {
      {3, report, "agent status unavailable (exit 3)"},
      {-1, report, "agent status unavailable (exit -1)"},
      {0, "", "agent status unavailable (exit 0)"},
      {0, "panic: \xff\xfe", "agent status unavailable (exit 0)"},
      {0, report.substr(0, report.size() - 1), "agent status unavailable (exit 0)"},
      {0, report + report, "agent status unavailable (exit 0)"},
  };
  for (const auto& row : rows) {
    Snapshot expected;
    expected.statusError = row.error;
    EXPECT_TRUE(statusSnapshot(inputsOf(row.status, row.output)) == expected)
        << row.error << " " << row.output;
  }
  const auto snapshot = statusSnapshot(inputsOf(0, report + "\n"));
  EXPECT_EQ(snapshot.statusError, std::nullopt);
  EXPECT_EQ(snapshot.verdict, "protected");
  EXPECT_TRUE(snapshot.daemonListening);
}

TEST(StatusRead, AReactivationIsWantedWhenItIsPending) {
  const std::pair<std::string, std::optional<std::string>> rows[] = {
      {"", std::nullopt},
      {R"("reactivate_version":"4.13.0",)", std::nullopt},
      {R"("reactivate_pending":false,"reactivate_version":"4.13.0",)", std::nullopt},
      {R"("reactivate_pending":true,)", ""},
      {R"("reactivate_pending":true,"reactivate_version":"4.13.0",)", "4.13.0"},
  };
  for (const auto& [members, version] : rows) {
    const auto report = "{" + members + reportText().substr(1);
    EXPECT_EQ(pendingReactivation(inputsOf(0, report)), version) << members;
  }
}

TEST(StatusRead, ASetupObservationIsReadFromTheReport) {
  const auto observation = setupObservation(inputsOf(0, fullReportText()));
  EXPECT_EQ(observation, (SetupObservation{true, true, true, true, false, "ok", "C", {}, "protected"}));
  EXPECT_EQ(setupObservation(inputsOf(3, fullReportText())), SetupObservation());
}

TEST(StatusRead, TransparentProxiesCountTogetherAndNoneOrAFailureLeavesTheDefaults) {
  using Proxies = std::vector<TransparentProxyConfiguration>;
  struct Row {
    NetworkPreferences::TransparentProxies loaded;
    bool sysextActive;
    std::optional<Snapshot::TransparentProxy> proxy;
  };
  using Proxy = Snapshot::TransparentProxy;
  const Row rows[] = {
      {std::unexpected(loadError), false, std::nullopt},
      {std::unexpected(TransparentProxiesError(loadError, {{true, true}})), true, std::nullopt},
      {Proxies{}, false, std::nullopt},
      {Proxies{{false, false}}, false, Proxy{true, false}},
      {Proxies{{true, false}}, false, Proxy{true, true}},
      {Proxies{{false, true}}, true, Proxy{true, false}},
      {Proxies{{true, false}, {false, true}}, true, Proxy{true, true}},
  };
  for (const auto& row : rows) {
    auto inputs = inputsOf(0, "");
    inputs.transparentProxies = row.loaded;
    const auto snapshot = statusSnapshot(inputs);
    const auto index = &row - rows;
    EXPECT_EQ(snapshot.sysextActive, row.sysextActive) << index;
    EXPECT_TRUE(snapshot.transparentProxy == row.proxy) << index;
  }
}

TEST(StatusRead, TheEgressLockNeedsAProviderThatIsEnabled) {
  using Filter = ContentFilterConfiguration;
  const std::pair<NetworkPreferences::ContentFilter, bool> rows[] = {
      {std::unexpected(loadError), false}, {Filter{false, false}, false}, {Filter{true, false}, false},
      {Filter{false, true}, false},        {Filter{true, true}, true},
  };
  for (const auto& [loaded, enabled] : rows) {
    auto inputs = inputsOf(0, "");
    inputs.contentFilter = loaded;
    EXPECT_EQ(statusSnapshot(inputs).egressLockEnabled, enabled);
  }
}

}  // namespace
}  // namespace ostrel
