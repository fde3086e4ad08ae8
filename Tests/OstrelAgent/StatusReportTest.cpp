#include "OstrelAgent/StatusReport.hpp"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <set>

namespace ostrel {
namespace {

using nlohmann::json;

/// A document with every known key.
const json& full() {
  static const json document = [] {
    const json component = {{"state", "ok"},         {"detail", "d"},
                            {"code", "CODE"},        {"severity", "yellow"},
                            {"self_healing", true},  {"expected_clear_by", "2025-01-02T03:04:05Z"},
                            {"params", {"p0", "p1"}}};
    auto runtimeTrust = component;
    runtimeTrust["knobs"] = {{{"env", "E"},
                              {"ecosystem", "npm"},
                              {"protects", {"npm"}},
                              {"covered", true},
                              {"reason", "r"},
                              {"evidence", "e"},
                              {"program", "p"},
                              {"last_seen", "l"},
                              {"file", "f"}}};
    json health = {{"runtime_trust", runtimeTrust}, {"verdict", "protected"}, {"off_by_policy", 2}};
    for (const auto* key :
         {"daemon", "ca", "sysext", "credential", "capture_set", "ca_expiry", "egress_lock"}) {
      health[key] = component;
      health[key]["detail"] = key;
    }
    return json{
        {"version", "2.4.0"},
        {"ca_trusted", true},
        {"token_present", true},
        {"token_managed", true},
        {"token_masked", "ost_…9f"},
        {"enrolled", true},
        {"daemon_listening", true},
        {"reactivate_pending", true},
        {"reactivate_version", "2.3.0"},
        {"ca_trust_pending", true},
        {"update", {{"state", "eol"}, {"latest_version", "3.0"}, {"minimum_supported_version", "2.9"}}},
        {"health", health},
        {"features",
         {{{"id", "guard"},
           {"state", "on"},
           {"ecosystems", {{{"ecosystem", "npm"}, {"capability", "c"}, {"state", "s"}}}}}}},
        {"interception", {{"policy_direct_flows", 12}}},
        {"checkin", {{"last_success", "2025-01-02T03:04:05.678Z"}, {"last_error", "timeout"}}}};
  }();
  return document;
}

TEST(StatusReport, ReadsEveryKeyIntoItsField) {
  const auto report = StatusReport::decode(full().dump());
  ASSERT_TRUE(report) << report.error().description();
  const auto component = [](std::optional<std::string> detail) {
    return StatusReport::Health::Component{"ok", std::move(detail),      "CODE",        "yellow",
                                           true, "2025-01-02T03:04:05Z", {{"p0", "p1"}}};
  };
  const StatusReport expected{
      .version = "2.4.0",
      .caTrusted = true,
      .tokenPresent = true,
      .tokenManaged = true,
      .tokenMasked = "ost_…9f",
      .enrolled = true,
      .daemonListening = true,
      .reactivatePending = true,
      .reactivateVersion = "2.3.0",
      .caTrustPending = true,
      .update = StatusReport::Update{"eol", "3.0", "2.9"},
      .health = StatusReport::Health{component("daemon"), component("ca"), component("sysext"),
                                     StatusReport::Health::RuntimeTrust{
                                         component("d"),
                                         {{{"E", "npm", {{"npm"}}, true, "r", "e", "p", "l", "f"}}}},
                                     component("credential"), component("capture_set"),
                                     component("ca_expiry"), component("egress_lock"), "protected", 2},
      .features = {{{"guard", "on", {{{"npm", "c", "s"}}}}}},
      .interception = StatusReport::Interception{12},
      .checkin = StatusReport::Checkin{"2025-01-02T03:04:05.678Z", "timeout"}};
  EXPECT_EQ(*report, expected);
}

TEST(StatusReport, NeedsItsRequiredKeysAndTypesAtEveryLevel) {
  const std::set<std::string> required = {
      "version", "ca_trusted", "token_present", "token_managed", "daemon_listening",
      "state",   "env",        "ecosystem",     "covered",       "reason",
      "id",      "capability"};
  const auto flat = full().flatten();
  EXPECT_GT(flat.size(), 80U);
  for (const auto& [place, value] : flat.items()) {
    SCOPED_TRACE(place);
    const json::json_pointer pointer(place);
    const bool isElement = full().at(pointer.parent_pointer()).is_array();
    const bool isRequired = isElement || required.contains(pointer.back());
    auto changed = full();
    changed[pointer] = 1.5;
    EXPECT_FALSE(StatusReport::decode(changed.dump()));
    changed[pointer] = nullptr;
    EXPECT_EQ(StatusReport::decode(changed.dump()).has_value(), !isRequired);
    if (isElement) continue;
    changed[pointer.parent_pointer()].erase(pointer.back());
    EXPECT_EQ(StatusReport::decode(changed.dump()).has_value(), !isRequired);
  }
}

TEST(StatusReport, ReadsAnObjectWithTheRequiredKeysAlone) {
  const auto report = StatusReport::decode(
      R"({"version":"1","ca_trusted":false,"token_present":false,"token_managed":false,"daemon_listening":false})");
  ASSERT_TRUE(report);
  StatusReport expected;
  expected.version = "1";
  EXPECT_EQ(*report, expected);
}

/// Puts an unknown key into every object.
void addUnknown(json& value) {
  for (auto& element : value) {
    if (element.is_structured()) addUnknown(element);
  }
  if (value.is_object()) value["State"] = {{"state", {1, nullptr, {{"id", 2.5}}}}};
}

TEST(StatusReport, PassesOverUnknownKeysAtEveryLevel) {
  auto extended = full();
  addUnknown(extended);
  EXPECT_EQ(StatusReport::decode(extended.dump()), StatusReport::decode(full().dump()));
}

TEST(StatusReport, IsRefusedWhenCutShortAnywhere) {
  const auto bytes = full().dump(1);
  for (std::size_t length = 0; length < bytes.size(); ++length) {
    const auto report = StatusReport::decode(std::string_view(bytes).substr(0, length));
    ASSERT_FALSE(report) << length;
    EXPECT_EQ(report.error().description(), "the document ends before its JSON does") << length;
  }
  EXPECT_TRUE(StatusReport::decode(bytes + "\n"));
  EXPECT_FALSE(StatusReport::decode(bytes + "\n}"));
}

TEST(StatusReport, ReadsADocumentOfFiveMegabytes) {
  auto large = full();
  const auto feature = large["features"][0];
  for (int i = 0; i < 50'000; ++i) large["features"].push_back(feature);
  large["checkin"]["last_error"] = std::string(1'000'000, 'x');
  const auto bytes = large.dump();
  EXPECT_GT(bytes.size(), 5'000'000U);
  const auto report = StatusReport::decode(bytes);
  ASSERT_TRUE(report);
  EXPECT_EQ(report->features->size(), 50'001U);
  EXPECT_EQ(report->features->back(), report->features->front());
  EXPECT_EQ(report->checkin->lastError->size(), 1'000'000U);
}

}  // namespace
}  // namespace ostrel
