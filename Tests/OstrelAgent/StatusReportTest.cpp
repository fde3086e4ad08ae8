#include "OstrelAgent/StatusReport.hpp"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

namespace ostrel {
namespace {

using nlohmann::json;
using Health = StatusReport::Health;

/// The members of a component, with a detail that tells it from others.
std::string component(const std::string& detail) {
  return R"("state":"ok","code":"C","severity":"red","self_healing":true,"expected_clear_by":"t","params":["p","q"],)"
         R"("detail":")" +
         detail + '"';
}

/// A document with every known key.
std::string full() {
  return R"({"version":"2.4.0","ca_trusted":true,"token_present":true,"token_managed":true,"token_masked":"ost_…9f",
    "enrolled":true,"daemon_listening":true,"reactivate_pending":true,"reactivate_version":"2.3.0",
    "ca_trust_pending":true,"update":{"state":"eol","latest_version":"3.0","minimum_supported_version":"2.9"},
    "health":{"daemon":{)" +
         component("1") + R"(},"ca":{)" + component("2") + R"(},"sysext":{)" + component("3") +
         R"(},"credential":{)" + component("5") + R"(},"capture_set":{)" + component("6") +
         R"(},"ca_expiry":{)" + component("7") + R"(},"egress_lock":{)" + component("8") +
         R"(},"runtime_trust":{)" + component("4") +
         R"(,"knobs":[{"env":"E","ecosystem":"npm","protects":["npm"],"covered":true,"reason":"r","evidence":"e",
    "program":"p","last_seen":"l","file":"f"}]},"verdict":"protected","off_by_policy":2},
    "features":[{"id":"guard","state":"on","ecosystems":[{"ecosystem":"npm","capability":"c","state":"s"}]}],
    "interception":{"policy_direct_flows":12},"checkin":{"last_success":"t","last_error":"timeout"}})";
}

TEST(StatusReport, ReadsEveryKeyIntoItsField) {
  const auto part = [](const char* detail) {
    return Health::Component{"ok", detail, "C", "red", true, "t", {{"p", "q"}}};
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
                              {{"t", "timeout"}}};
  const auto report = StatusReport::decode(full());
  ASSERT_TRUE(report) << report.error().description();
  EXPECT_EQ(*report, expected);
}

TEST(StatusReport, NeedsItsRequiredKeysAndTypesAtEveryLevel) {
  const std::string required =
      " version ca_trusted token_present token_managed daemon_listening state env ecosystem "
      "covered reason id capability ";
  const auto document = json::parse(full());
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
  const auto bytes = full();
  for (std::size_t length = 0; length < bytes.size(); ++length) {
    const auto report = StatusReport::decode(std::string_view(bytes).substr(0, length));
    ASSERT_FALSE(report) << length;
    EXPECT_EQ(report.error().description(), "the document ends before its JSON does") << length;
  }
}

}  // namespace
}  // namespace ostrel
