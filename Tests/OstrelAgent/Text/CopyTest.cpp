#include "OstrelAgent/Text/Copy.hpp"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <set>

#include "Tests/OstrelAgent/SnapshotBuilders.hpp"

namespace ostrel {
namespace {

using builders::Translated;
using Params = std::vector<std::string>;

std::set<std::string> keysOf(const auto& entries) {
  std::set<std::string> keys;
  for (const auto& [key, text] : entries) keys.insert(key);
  return keys;
}

TEST(Copy, HoldsEveryTextOnceAndInGermanWithTheSameParameters) {
  const auto english = Copy::english();
  EXPECT_EQ(english.size(), 374U);
  EXPECT_EQ(keysOf(english).size(), english.size());
  for (const auto& [key, text] : english) EXPECT_FALSE(text.empty() || text == "-") << key;
  std::ifstream file(GERMAN_TABLE, std::ios::binary);
  const auto german = parseStrings(std::string(std::istreambuf_iterator<char>(file), {}));
  ASSERT_TRUE(german) << "line " << german.error().line << ": " << german.error().reason;
  EXPECT_EQ(german->size(), english.size());
  EXPECT_EQ(keysOf(*german), keysOf(english));
  EXPECT_EQ(Copy::translation(*german).ignoredKeys, Params());
}

TEST(Copy, ShowsATranslationOnlyWithTheParametersOfItsText) {
  const StringsEntries entries = {{"guard.rollup.enforced", "von %2$d sind %1$d aktiv"},
                                  {"guard.rollup.notCovered", "%1$d offen"},
                                  {"age.hours", "vor %@ h"},
                                  {"verdict.protected", "Zu %d"},
                                  {"age.minutes", ""},
                                  {"lock.enabled", "lock.enabled"}};
  const Params ignored = {"guard.rollup.notCovered", "age.hours", "verdict.protected"};
  EXPECT_EQ(Copy::translation(entries).ignoredKeys, ignored);
  const Translated german(entries);
  EXPECT_EQ(Copy::rollupEnforced(2, 3), "von 3 sind 2 aktiv");
  EXPECT_EQ(Copy::rollupNotCovered(2, 3), "2 of 3 not covered");
  EXPECT_EQ(Copy::ageHours.with(3), "3 h ago");
  EXPECT_EQ(Copy::verdictProtected.text(), "Protected");
  EXPECT_EQ(Copy::ageMinutes.with(3), "");
  EXPECT_EQ(Copy::lockEnabled.text(), "enabled");
  EXPECT_EQ(Copy::lockEnforcing.text(), "enforcing");
}

TEST(Copy, RelaysTheDaemonsSentenceUnlessATranslationKnowsTheCode) {
  struct Row {
    std::string code;
    Params params;
    const char* variant;     ///< of the translation's key
    const char* translated;  ///< by "<%1$@|%2$@>"
  };
  const Row rows[] = {
      {"APP_STARTED_WITHOUT_TRUST_ENV", {"npm", "Terminal", "app"}, ".app", "<npm|>"},
      {"APP_STARTED_WITHOUT_TRUST_ENV", {"npm", "", "service"}, ".service", "<npm|>"},
      {"APP_STARTED_WITHOUT_TRUST_ENV", {"npm", "Terminal", "App"}, "", "<npm|Terminal>"},
      {"APP_STARTED_WITHOUT_TRUST_ENV", {"npm", "", "shell"}, ".noTerminal", "<npm|>"},
      {"APP_SHELL_SKIPPED_TRUST_SEED", {"zsh", "Terminal", "app"}, "", "<zsh|Terminal>"},
      {"APP_SHELL_SKIPPED_TRUST_SEED", {"zsh"}, ".noTerminal", "<zsh|>"},
      {"TRUST_VERIFIED_BY_TRAFFIC", {"a", "b", "c"}, "", "<a|b>"},
      {"TRUST_KNOB_OVERRIDE_SUSPECTED", {"a", "b"}, "", "<a|b>"},
      {"TRUST_KNOB_OVERRIDE_SUSPECTED", {"a"}, "", "<a|>"},
      {"TRUST_KNOB_UNCOVERED", {"a", "", "c"}, "", "<a, , c|>"},
      {"CREDENTIAL_X", {"a", "", "c"}, "", "<a, , c|>"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.code + testing::PrintToString(row.params));
    EXPECT_TRUE(Copy::relaysWireDetail(row.code));
    EXPECT_EQ(Copy::componentDetail(row.code, "100%@ wire", row.params), "100%@ wire");
    const Translated one{{"detail." + row.code + row.variant, "<%1$@|%2$@>"}};
    EXPECT_EQ(Copy::componentDetail(row.code, "wire", row.params), row.translated);
    EXPECT_EQ(Copy::componentDetail(row.code, "<%1$@|%2$@>", row.params), "<%1$@|%2$@>");
  }
}

TEST(Copy, HasItsOwnSentenceForOtherCodes) {
  EXPECT_EQ(Copy::componentDetail("", "wire", {"a"}), "wire");
  EXPECT_EQ(Copy::componentDetail("CREDENTIAL_UNOBSERVABLE", "wire", {}),
            "The agent could not check its credential this time.");
  EXPECT_EQ(Copy::componentDetail("listener_down", "wire", {}),
            "The agent reported a condition this app version does not recognize (listener_down).");
  const Translated german{{"detail.SYSEXT_IDLE", "untätig"}, {"detail.unknown", "unbekannt: %@"}};
  EXPECT_EQ(Copy::componentDetail("SYSEXT_IDLE", "wire", {}), "untätig");
  EXPECT_EQ(Copy::componentDetail("NEW", "wire", {}), "unbekannt: NEW");
}

TEST(Copy, KnowsRemediesByCodeAndLauncher) {
  EXPECT_EQ(Copy::remedy("APP_STARTED_WITHOUT_TRUST_ENV", {"a", "b", "app"}), "Quit and reopen it.");
  EXPECT_EQ(Copy::remedy("APP_STARTED_WITHOUT_TRUST_ENV", {"a", "b", "service"}),
            "Restart that service. Until then its downloads are blocked, not bypassed.");
  EXPECT_EQ(Copy::remedy("APP_STARTED_WITHOUT_TRUST_ENV", {"a", "app"}),
            "Open a new terminal window and run it again.");
  EXPECT_EQ(Copy::remedy("APP_REJECTED_LEAF", {"a", "b", "app"}), "Restart the program named above.");
  for (const auto* code : {"TRUST_SEEDED_FOR_SHELL", "SYSEXT_IDLE", "", "NEW"}) {
    EXPECT_EQ(Copy::remedy(code, {}), std::nullopt) << code;
  }
}

TEST(Copy, NamesEcosystemsOffByPolicyAndTheirDirectFlows) {
  EXPECT_EQ(
      Copy::offNote({"a", "b", "", "d"}, -1),
      "a, b,  and d are turned off by your organization. Their traffic goes direct and is not inspected.");
  EXPECT_EQ(
      Copy::offNote({"npm"}, 12),
      "npm is turned off by your organization. Its traffic goes direct and is not inspected. 12 connections "
      "have passed through direct since the daemon started.");
}

TEST(Copy, NamesAFileByTheLastComponentOfItsPath) {
  for (const auto* path : {"b", "/b", "/a/b/", "a/b//"}) EXPECT_EQ(lastPathComponent(path), "b") << path;
  EXPECT_EQ(lastPathComponent("//"), "/");
  EXPECT_EQ(lastPathComponent(""), "");
}

}  // namespace
}  // namespace ostrel
