#include "SimulatedEndpoint/Scenario.hpp"

#include <gtest/gtest.h>

#include "SimulatedEndpoint/TimeOffset.hpp"

namespace ostrel::simulated {
namespace {

using namespace std::chrono_literals;

constexpr const char* document =
    R"({"report": {"version": "4.12.0", "update": null, "features": [{"id": "guard"}]},
        "network": {"transparent_proxies": [{"enabled": true, "connected": true}]}})";

TEST(Scenario, ADamagedDocumentIsRefusedWithAReason) {
  const std::pair<std::string, const char*> rows[] = {
      {"", "is not JSON"},
      {"{\"report\": {}", "line 1"},
      {"{\"report\": {\"version\": \"\xff\"}}", "UTF-8"},
      {"{\"report\": {\"x\": " + std::string(100'000, '[') + std::string(100'000, ']') + "}}", "nested"},
      {"{}", "\"report\" must be an object"},
      {R"({"report": {}, "netwrok": {}})", "\"netwrok\""},
      {R"({"report": {}, "mdm_enrolled": 1})", "\"mdm_enrolled\""},
      {R"({"report": {"checkin": {"last_success": "@-2x"}}})", "\"@-2x\""},
      {R"({"report": {}, "helper": {"exit": 256}})", "\"helper.exit\""},
      {R"({"report": {}, "helper": {"exti": 3}})", "\"exti\""},
      {R"({"report": {}, "network": {"content_filter": {"enabled": true}}})", "content_filter.provider"},
      {R"({"report": {}, "network": {"transparent_proxies": [{"enabled": 1, "connected": true}]}})",
       "transparent_proxies.0.enabled"},
      {R"({"report": {}, "mac": {"tool": []}})", "\"tool\""},
      {R"({"report": {}, "mac": {"installed": [1]}})", "mac.installed"},
      {R"({"report": {}, "mac": {"tools": ["../colima"]}})", "mac.tools"},
      {R"({"report": {}, "mac": {"docker_sharing": "/Users"}})", "mac.docker_sharing"},
      {R"({"report": {}, "mac": {"running": {"com.docker.docker": "@-2x"}}})", "\"com.docker.docker\""},
      {R"({"report": {}, "mac": {"bundle": 3}})", "mac.bundle"},
      {R"({"report": {}, "mac": {"bundle_published": "today"}})", "bundle_published"},
  };
  for (const auto& [text, named] : rows) {
    const auto scenario = Scenario::fromText(text);
    ASSERT_FALSE(scenario) << named;
    EXPECT_NE(scenario.error().find(named), std::string::npos) << scenario.error();
  }
}

TEST(Scenario, SetsAValueAtADottedPath) {
  struct Row {
    const char* path;
    Json value;
    const char* pointer;
  };
  const Row rows[] = {
      {"report.features.0.state", "off", "/report/features/0/state"},
      {"report.features.1", {{"id", "new"}}, "/report/features/1"},
      {"report.update.state", "eol", "/report/update/state"},
      {"helper", {{"exit", 3}}, "/helper"},
      {"network.transparent_proxies.0.connected", false, "/network/transparent_proxies/0/connected"},
      {"mdm_enrolled", true, "/mdm_enrolled"},
  };
  const auto scenario = Scenario::fromText(document).value();
  for (const auto& row : rows) {
    const auto changed = scenario.with(row.path, row.value);
    ASSERT_TRUE(changed) << row.path << ": " << changed.error();
    EXPECT_EQ(changed->document().at(Json::json_pointer(row.pointer)), row.value) << row.path;
  }
}

TEST(Scenario, RefusesAnInvalidPath) {
  const auto scenario = Scenario::fromText(document).value();
  for (const auto* path : {"report..version", "reprot.version", "report.version.major", "report.features.2",
                           "report.features.-1", "report.features.99999999999999999999",
                           "network.transparent_proxies.0.enabled"}) {
    EXPECT_FALSE(scenario.with(path, "text")) << path;
  }
}

TEST(TimeOffset, IsReplacedByItsTimeAtAnyDepth) {
  const auto now = std::chrono::sys_days(std::chrono::year(2024) / 2 / 28) + 23h + 59min;
  const std::pair<const char*, const char*> rows[] = {
      {"@+0s", "2024-02-28T23:59:00Z"},     {"@+1m", "2024-02-29T00:00:00Z"},
      {"@+1h30m", "2024-02-29T01:29:00Z"},  {"@-1d23h59m1s", "2024-02-26T23:59:59Z"},
      {"@scope/package", "@scope/package"}, {"@+36526d", "@+36526d"},
  };
  for (const auto& [text, time] : rows) {
    EXPECT_EQ(withTimes({{"a", {1, text, nullptr}}}, now), Json({{"a", {1, time, nullptr}}}));
  }
  for (const auto* text : {"@+", "@+10", "@+1w", "@+-1m", "@+1m ", "@+36526d", "@+99999999999999999999d"}) {
    EXPECT_EQ(firstMisspeltTime({{"x", {1, text}}}), text);
  }
}

TEST(Rfc3339, ATimeIsReadWithItsFractionAndOffset) {
  const auto day = std::chrono::sys_days(std::chrono::year(2024) / 2 / 29);
  const std::pair<const char*, std::optional<Date>> rows[] = {
      {"2024-02-29T00:00:00Z", day},
      {"2024-02-29T01:02:03.5Z", day + 1h + 2min + 3s + 500ms},
      {"2024-02-29T01:02:03.123456789Z", day + 1h + 2min + 3s + 123ms},
      {"2024-02-29T01:30:00+01:30", day},
      {"2024-02-28T23:00:00-01:00", day},
      {"2024-02-28T23:59:60Z", day},
      {"2023-02-29T00:00:00Z", std::nullopt},
      {"2024-02-29T24:00:00Z", std::nullopt},
      {"2024-02-29T00:60:00Z", std::nullopt},
      {"2024-02-29T00:00:00+24:00", std::nullopt},
      {"2024-02-29T00:00:00", std::nullopt},
      {"2024-02-29T00:00:00Z ", std::nullopt},
      {"2024-02-29 00:00:00Z", std::nullopt},
      {"", std::nullopt},
  };
  for (const auto& [text, time] : rows) EXPECT_EQ(parseRfc3339(text), time) << text;
}

}  // namespace
}  // namespace ostrel::simulated
