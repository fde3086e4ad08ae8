#include "SimulatedEndpoint/Scenario.hpp"

#include <gtest/gtest.h>

#include <array>

namespace ostrel::simulated {
namespace {

Scenario scenarioOf(const char* text) { return Scenario::fromText(text).value(); }

TEST(Scenario, FillsInWhatIsLeftOut) {
  const auto scenario = scenarioOf(R"({"report": {}, "network": {"transparent_proxies": []}})");
  const Json expected = {{"name", ""},
                         {"description", ""},
                         {"report", Json::object()},
                         {"helper", Json::object()},
                         {"network",
                          {{"transparent_proxies", Json::array()},
                           {"content_filter", {{"provider", false}, {"enabled", false}}}}},
                         {"mdm_enrolled", false}};
  EXPECT_EQ(scenario.document(), expected);
}

TEST(Scenario, SaysWhatIsWrongWithADocument) {
  struct Row {
    std::string text;
    const char* named;
  };
  const std::array<Row, 13> rows = {{
      {"", "is not JSON"},
      {"{\"report\": {}", "line 1"},
      {"{\"report\": {\"version\": \"\xff\"}}", "UTF-8"},
      {std::string(100'000, '['), "is not JSON"},
      {"{\"report\": {\"x\": " + std::string(100'000, '[') + std::string(100'000, ']') + "}}", "nested"},
      {"[]", "must be an object"},
      {"{}", "\"report\" must be an object"},
      {R"({"report": {}, "netwrok": {}})", "\"netwrok\""},
      {R"({"report": {}, "mdm_enrolled": 1})", "\"mdm_enrolled\""},
      {R"({"report": {"checkin": {"last_success": "@-2x"}}})", "\"@-2x\""},
      {R"({"report": {}, "helper": {"exit": "3"}})", "\"helper.exit\""},
      {R"({"report": {}, "network": {"content_filter": {"enabled": true}}})", "content_filter.provider"},
      {R"({"report": {}, "network": {"transparent_proxies": [{"enabled": 1, "connected": true}]}})",
       "transparent_proxies.0.enabled"},
  }};
  for (const auto& row : rows) {
    const auto scenario = Scenario::fromText(row.text);
    ASSERT_FALSE(scenario) << row.named;
    EXPECT_NE(scenario.error().find(row.named), std::string::npos) << scenario.error();
  }
}

TEST(Scenario, TakesAValueAtADottedPath) {
  struct Row {
    const char* path;
    Json value;
    const char* pointer;
  };
  const std::array<Row, 8> rows = {{
      {"report.health.verdict", "degraded", "/report/health/verdict"},
      {"report.features.0.state", "off", "/report/features/0/state"},
      {"report.features.1", {{"id", "new"}}, "/report/features/1"},
      {"report.update.state", "eol", "/report/update/state"},
      {"report.version", 7, "/report/version"},
      {"helper", {{"exit", 3}}, "/helper"},
      {"network.transparent_proxies.0.connected", false, "/network/transparent_proxies/0/connected"},
      {"mdm_enrolled", true, "/mdm_enrolled"},
  }};
  const auto scenario = scenarioOf(
      R"({"report": {"version": "4.12.0", "update": null, "features": [{"id": "guard", "state": "on"}]},
          "network": {"transparent_proxies": [{"enabled": true, "connected": true}]}})");
  for (const auto& row : rows) {
    const auto changed = scenario.with(row.path, row.value);
    ASSERT_TRUE(changed) << row.path << ": " << changed.error();
    EXPECT_EQ(changed->document().at(Json::json_pointer(row.pointer)), row.value) << row.path;
  }
}

TEST(Scenario, RefusesAPathThatLeadsNowhere) {
  struct Row {
    std::string path;
    const char* named;
  };
  const std::array<Row, 10> rows = {{
      {"", "empty segment"},
      {"report..version", "empty segment"},
      {"reprot.version", "\"reprot\""},
      {"report.version.major", "report.version is a text"},
      {"report.features.2", "report.features is a list of 1"},
      {"report.features.first", "\"first\""},
      {"report.features.-1", "\"-1\""},
      {"report.features.99999999999999999999", "no index"},
      {"helper.exti", "\"exti\""},
      {"network.transparent_proxies.0.enabled", "true or false"},
  }};
  const auto scenario = scenarioOf(
      R"({"report": {"version": "4.12.0", "features": [{"id": "guard"}]},
          "network": {"transparent_proxies": [{"enabled": true, "connected": true}]}})");
  for (const auto& row : rows) {
    const auto changed = scenario.with(row.path, "text");
    ASSERT_FALSE(changed) << row.path;
    EXPECT_NE(changed.error().find(row.named), std::string::npos) << changed.error();
  }
  std::string deep = "report";
  for (int level = 0; level < 1000; ++level) deep += ".x";
  EXPECT_FALSE(scenario.with(deep, 1));
}

}  // namespace
}  // namespace ostrel::simulated
