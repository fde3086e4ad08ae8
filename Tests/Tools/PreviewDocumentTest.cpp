#include "Tools/PreviewDocument.hpp"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "OstrelAgent/Panel/PanelContent.hpp"
#include "OstrelAgent/Status/Verdict.hpp"
#include "Tests/OstrelAgent/ReportText.hpp"
#include "Tests/OstrelAgent/SnapshotBuilders.hpp"
#include "Tools/PreviewJson.hpp"

namespace ostrel {
namespace {

std::string envelope(const std::string& additions, const std::string& report = reportText()) {
  return "{\"report\":" + report + "," + additions + "}";
}

std::string withHealth(const std::string& health) {
  auto report = nlohmann::json::parse(reportText());
  report["health"] = nlohmann::json::parse(health);
  return report.dump();
}

TEST(PreviewDocument, TakesTheGivenNetworkStateOrThatOfTheReport) {
  struct Row {
    std::string document;
    bool sysextActive;
    std::optional<Snapshot::TransparentProxy> proxy;
    bool egressLockEnabled;
  };
  using Proxy = Snapshot::TransparentProxy;
  const auto allOk = withHealth(R"({"sysext":{"state":"ok"},"egress_lock":{"state":"ok"}})");
  const Row rows[] = {
      {reportText(), false, std::nullopt, false},
      {allOk, true, Proxy{true, true}, true},
      {envelope(R"("transparent_proxies":[],"egress_filter":{"enabled":false})", allOk), false, std::nullopt,
       false},
      {envelope(R"("transparent_proxies":[{"enabled":true}],"egress_filter":{"enabled":true})"), true,
       Proxy{true, true}, true},
      {envelope(R"("transparent_proxies":[{"enabled":true,"connected":false}])"), false, Proxy{true, true},
       false},
  };
  for (const auto& row : rows) {
    const auto reading = readPreviewDocument(row.document);
    ASSERT_TRUE(reading) << reading.error().description() << row.document;
    const auto& snapshot = reading->model.snap;
    EXPECT_TRUE(reading->model.hasReading);
    EXPECT_EQ(snapshot.version, "2.4.0");
    EXPECT_EQ(snapshot.sysextActive, row.sysextActive) << row.document;
    EXPECT_TRUE(snapshot.transparentProxy == row.proxy) << row.document;
    EXPECT_EQ(snapshot.egressLockEnabled, row.egressLockEnabled) << row.document;
  }
}

TEST(PreviewDocument, TakesTheFactsThatNoReportHolds) {
  const auto reading = readPreviewDocument(envelope(
      R"("mdm_enrolled":true,"running_container_runtimes":["Podman","Docker"],"now":"2025-01-02T03:04:05+01:00")"));
  ASSERT_TRUE(reading) << reading.error().description();
  EXPECT_TRUE(reading->model.snap.mdmEnrolled);
  EXPECT_EQ(reading->model.runningContainerRuntimes, (std::vector<std::string>{"Docker", "Podman"}));
  EXPECT_EQ(reading->now, Date(std::chrono::seconds(1735783445)));
  EXPECT_EQ(readPreviewDocument(reportText())->now, std::nullopt);
}

TEST(PreviewDocument, AFailedHelperLeavesItsReportUnread) {
  for (const auto& document : {envelope(R"("helper_status":3)"), envelope(R"("helper_status":3)", "17"),
                               std::string(R"({"helper_status":3})")}) {
    const auto reading = readPreviewDocument(document);
    ASSERT_TRUE(reading) << reading.error().description() << document;
    EXPECT_EQ(reading->model.snap.statusError, "agent status unavailable (exit 3)");
    EXPECT_EQ(reading->model.snap.version, "");
  }
}

TEST(PreviewDocument, AFaultIsReportedWithItsPlace) {
  const std::pair<std::string, const char*> rows[] = {
      {"", "the document"},
      {reportText() + "]", "column"},
      {"{}", "version is missing"},
      {withHealth(R"({"daemon":{"state":1}})"), "health.daemon.state is not a text"},
      {envelope(R"("transparent_proxies":[{"enabled":true},{}])"),
       "transparent_proxies[1].enabled is missing"},
      {envelope(R"("now":"yesterday")"), "now is not a time such as 2025-01-02T03:04:05Z"},
      {envelope(R"("helper_status":4294967296)"), "helper_status is not an exit status"},
      {R"({"now":"2025-01-02T03:04:05Z"})", "report is missing"},
  };
  for (const auto& [document, fault] : rows) {
    const auto reading = readPreviewDocument(document);
    ASSERT_FALSE(reading) << document;
    EXPECT_NE(reading.error().description().find(fault), std::string::npos)
        << reading.error().description() << "\n"
        << document;
  }
}

TEST(PreviewJson, HasEveryPartOfThePanelAndNullForWhatIsAbsent) {
  const auto shown = [](const std::string& document) {
    const auto reading = readPreviewDocument(document);
    return previewJson(reading->model.snap, panelContent(reading->model, Date(), builders::times(),
                                                         {PanelAction::quitStatusIcon}));
  };
  auto report = nlohmann::json::parse(reportText());
  report["update"] = {{"state", "available"}, {"latest_version", "3.0"}};
  const auto full = shown(report.dump());
  EXPECT_EQ(full["verdict"], "protected");
  EXPECT_EQ(full["status_error"], nullptr);
  EXPECT_EQ(full["update"]["version"], "3.0");
  EXPECT_EQ(full["update"]["button"], nullptr);
  EXPECT_EQ(full["health"]["components"].size(), 5U);
  EXPECT_EQ(full["buttons"].dump(),
            R"([{"title":"Quit status icon","action":"quitStatusIcon","enabled":true}])");
  const auto failed = shown(R"({"helper_status":3})");
  EXPECT_EQ(failed["verdict"], "notReported");
  EXPECT_EQ(failed["status_error"]["text"], "agent status unavailable (exit 3)");
  for (const auto* key : {"update", "protection", "health"}) EXPECT_EQ(failed[key], nullptr) << key;
  for (const auto& [key, value] : full.items()) EXPECT_TRUE(failed.contains(key)) << key;
}

}  // namespace
}  // namespace ostrel
