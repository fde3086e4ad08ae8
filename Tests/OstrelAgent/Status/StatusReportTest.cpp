#include "OstrelAgent/Status/StatusReport.hpp"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "Tests/OstrelAgent/ReportText.hpp"

namespace ostrel {
namespace {

using nlohmann::json;
using Health = StatusReport::Health;

TEST(StatusReport, ReadsEveryKeyIntoItsField) {
  const auto part = [](const char* detail) {
    return Health::Component{"ok", detail, "C", "red", true, "2025-01-02T12:00:00+02:00", {{"p", "q"}}};
  };
  const Health::RuntimeTrust trust{part("4"), {{{"E", "npm", {{"npm"}}, true, "r", "e", "p", "l", "f"}}}};
  const Health health{part("1"), part("2"), part("3"), trust,       part("5"),
                      part("6"), part("7"), part("8"), "protected", 2};
  const StatusReport expected{"2.4.0",
                              true,
                              true,
                              true,
                              "ost_…9f",
                              true,
                              true,
                              true,
                              "2.3.0",
                              true,
                              {{"eol", "3.0", "2.9"}},
                              health,
                              {{{"guard", "on", {{{"npm", "c", "s"}}}}}},
                              {{12}},
                              {{"2025-01-02T10:00:00Z", "timeout"}}};
  const auto report = StatusReport::decode(fullReportText());
  ASSERT_TRUE(report) << report.error().description();
  EXPECT_EQ(*report, expected);
}

TEST(StatusReport, NeedsItsRequiredKeysAndTypesAtEveryLevel) {
  const std::string required =
      " version ca_trusted token_present token_managed daemon_listening state env ecosystem "
      "covered reason id capability ";
  const auto document = json::parse(fullReportText());
  const auto flat = document.flatten();
  for (const auto& [place, value] : flat.items()) {
    SCOPED_TRACE(place);
    const json::json_pointer pointer(place);
    const bool isElement = document.at(pointer.parent_pointer()).is_array();
    const bool isRequired = isElement || required.contains(' ' + pointer.back() + ' ');
    auto changed = document;
    changed[pointer] = 1.5;
    EXPECT_FALSE(StatusReport::decode(changed.dump()));
    changed[pointer] = nullptr;
    EXPECT_EQ(StatusReport::decode(changed.dump()).has_value(), !isRequired);
    if (isElement) continue;
    changed[pointer.parent_pointer()].erase(pointer.back());
    EXPECT_EQ(StatusReport::decode(changed.dump()).has_value(), !isRequired);
  }
}

TEST(StatusReport, IsRefusedWhenCutShortAnywhere) {
  const auto bytes = fullReportText();
  for (std::size_t length = 0; length < bytes.size(); ++length) {
    const auto report = StatusReport::decode(std::string_view(bytes).substr(0, length));
    ASSERT_FALSE(report) << length;
    EXPECT_EQ(report.error().description(), "the document ends before its JSON does") << length;
  }
}

}  // namespace
}  // namespace ostrel
