#include "OstrelAgent/Status/StatusRead.hpp"

#include <gtest/gtest.h>

#include "Tests/OstrelAgent/ReportText.hpp"

namespace ostrel {
namespace {

const PlatformError loadError{"NEVPNErrorDomain", 5, "not readable"};

TEST(StatusRead, OnlyAReportOfAHelperThatEndedWellIsRead) {
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
    EXPECT_TRUE(statusReading({{row.status, row.output}}) == StatusReading{expected})
        << row.error << " " << row.output;
  }
  const auto snapshot = statusReading({{0, report + "\n"}}).snapshot;
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
    EXPECT_EQ(statusReading({{0, report}}).reactivateVersion, version) << members;
  }
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
    Snapshot snapshot;
    addTransparentProxies(snapshot, row.loaded);
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
    Snapshot snapshot;
    addContentFilter(snapshot, loaded);
    EXPECT_EQ(snapshot.egressLockEnabled, enabled);
  }
}

}  // namespace
}  // namespace ostrel
