#include "OstrelAgent/Copy.hpp"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <set>

#include "Tests/OstrelAgent/Readings.hpp"

namespace ostrel {
namespace {

using readings::Translated;
using Params = std::vector<std::string>;

std::set<std::string> keysOf(const auto& entries) {
  std::set<std::string> keys;
  for (const auto& [key, text] : entries) keys.insert(key);
  return keys;
}

TEST(Copy, HoldsEveryTextOnceUnderItsKey) {
  const auto english = Copy::english();
  EXPECT_EQ(english.size(), 374U);
  EXPECT_EQ(keysOf(english).size(), english.size());
  for (const auto& [key, text] : english) EXPECT_FALSE(text.empty() || text == "-") << key;
}

TEST(Copy, IsTranslatedToGermanWholeAndWithTheSameParameters) {
  std::ifstream file(GERMAN_TABLE, std::ios::binary);
  const std::string bytes(std::istreambuf_iterator<char>(file), {});
  const auto entries = parseStrings(bytes);
  ASSERT_TRUE(entries) << "line " << entries.error().line << ": " << entries.error().reason;
  EXPECT_EQ(entries->size(), 374U);
  EXPECT_EQ(keysOf(*entries), keysOf(Copy::english()));
  EXPECT_EQ(Copy::translation(*entries).ignoredKeys, Params());
}

TEST(Copy, TakesATranslationOnlyWithTheParametersOfItsText) {
  const auto translation = Copy::translation({{"guard.rollup.enforced", "von %2$d sind %1$d aktiv"},
                                              {"guard.rollup.notCovered", "%2$d, davon %1$d offen"},
                                              {"guard.rollup.notCovered", "%1$d offen"},
                                              {"age.hours", "vor %@ h"},
                                              {"age.minutes", "vor kurzem"},
                                              {"state.notReported", "100% still"},
                                              {"verdict.protected", "Zu %d"},
                                              {"lock.off", ""},
                                              {"detail.TRUST_SEED_MISSING", "ohne Vorgabe: %@"}});
  EXPECT_EQ(translation.ignoredKeys,
            (Params{"guard.rollup.notCovered", "age.hours", "age.minutes", "verdict.protected"}));
  EXPECT_EQ(keysOf(translation.table),
            (std::set<std::string>{"guard.rollup.enforced", "guard.rollup.notCovered", "state.notReported",
                                   "lock.off", "detail.TRUST_SEED_MISSING"}));
}

TEST(Copy, ShowsTheTranslationAndElseTheDefault) {
  const Translated german{{"guard.rollup.enforced", "von %2$d sind %1$d aktiv"},
                          {"age.hours", "vor %@ h"},
                          {"lock.off", ""},
                          {"lock.enabled", "lock.enabled"}};
  EXPECT_EQ(Copy::rollupEnforced(2, 3), "von 3 sind 2 aktiv");
  EXPECT_EQ(Copy::ageHours.with(3), "3 h ago");
  EXPECT_EQ(Copy::lockOff.text(), "");
  EXPECT_EQ(Copy::lockEnabled.text(), "enabled");
  EXPECT_EQ(Copy::lockEnforcing.text(), "enforcing");
}

struct DetailRow {
  const char* code;
  Params params;
  const char* key;         ///< of the translation that applies
  const char* translated;  ///< with that translation "<%1$@|%2$@>"
};

const DetailRow relayedRows[] = {
    {"APP_STARTED_WITHOUT_TRUST_ENV", {"npm", "Terminal", "app"}, ".app", "<npm|>"},
    {"APP_STARTED_WITHOUT_TRUST_ENV", {"npm", "", "service"}, ".service", "<npm|>"},
    {"APP_STARTED_WITHOUT_TRUST_ENV", {"npm", "Terminal"}, "", "<npm|Terminal>"},
    {"APP_STARTED_WITHOUT_TRUST_ENV", {"npm", "Terminal", "App"}, "", "<npm|Terminal>"},
    {"APP_STARTED_WITHOUT_TRUST_ENV", {"npm", "", "shell"}, ".noTerminal", "<npm|>"},
    {"APP_STARTED_WITHOUT_TRUST_ENV", {""}, ".noTerminal", "<|>"},
    {"APP_STARTED_WITHOUT_TRUST_ENV", {}, "", "<|>"},
    {"APP_SHELL_SKIPPED_TRUST_SEED", {"zsh", "Terminal", "app"}, "", "<zsh|Terminal>"},
    {"APP_SHELL_SKIPPED_TRUST_SEED", {"zsh"}, ".noTerminal", "<zsh|>"},
    {"APP_SHELL_SKIPPED_TRUST_SEED", {}, "", "<|>"},
    {"TRUST_VERIFIED_BY_TRAFFIC", {"a", "b", "c"}, "", "<a|b>"},
    {"TRUST_TRUSTED_WITHOUT_KNOB", {"a", ""}, "", "<a|>"},
    {"TRUST_KNOB_OVERRIDE_SUSPECTED", {"a", "b"}, "", "<a|b>"},
    {"TRUST_KNOB_OVERRIDE_SUSPECTED", {"a"}, "", "<a|>"},
    {"TRUST_KNOB_UNCOVERED", {"a", "", "c"}, "", "<a, , c|>"},
    {"SYSEXT_REACTIVATE_PENDING", {}, "", "<|>"},
    {"APP_REJECTED_LEAF", {"a", "b"}, "", "<a, b|>"},
    {"CONTAINER_REJECTED_LEAF", {"a"}, "", "<a|>"},
    {"TRUST_ENV_SHELL_UNRESPONSIVE", {"a"}, "", "<a|>"},
    {"TRUST_SEEDED_FOR_SHELL", {"a"}, "", "<a|>"},
    {"TRUST_SEED_MISSING", {"a"}, "", "<a|>"},
    {"TRUST_RC_FILE_UNSCANNED", {"a"}, "", "<a|>"},
    {"CREDENTIAL_REVOKED", {"a", "b"}, "", "<a, b|>"},
    {"CREDENTIAL_OF_TOMORROW", {"a"}, "", "<a|>"},
};

TEST(Copy, RelaysTheDaemonsSentenceUnlessATranslationKnowsTheCode) {
  for (const auto& row : relayedRows) {
    SCOPED_TRACE(testing::Message() << row.code << testing::PrintToString(row.params));
    EXPECT_TRUE(Copy::relaysWireDetail(row.code));
    EXPECT_EQ(Copy::componentDetail(row.code, "100%@ wire", row.params), "100%@ wire");
    const Translated one{{std::string("detail.") + row.code + row.key, "<%1$@|%2$@>"}};
    EXPECT_EQ(Copy::componentDetail(row.code, "wire", row.params), row.translated);
  }
  const Translated same{{"detail.APP_REJECTED_LEAF", "said %@"}};
  EXPECT_EQ(Copy::componentDetail("APP_REJECTED_LEAF", "said %@", {"a"}), "said %@");
}

TEST(Copy, HasItsOwnSentenceForOtherCodes) {
  EXPECT_EQ(Copy::componentDetail("", "wire", {"a"}), "wire");
  EXPECT_EQ(Copy::componentDetail("EGRESS_LOCK_UNREPORTED", "wire", {"a"}),
            "The egress lock has not reported its state to the agent yet.");
  EXPECT_EQ(Copy::componentDetail("CREDENTIAL_UNOBSERVABLE", "wire", {}),
            "The agent could not check its credential this time.");
  EXPECT_EQ(Copy::componentDetail("listener_down", "wire", {}),
            "The agent reported a condition this app version does not recognize (listener_down).");
  const Translated german{{"detail.SYSEXT_IDLE", "untätig"}, {"detail.unknown", "unbekannt: %@"}};
  EXPECT_EQ(Copy::componentDetail("SYSEXT_IDLE", "wire", {}), "untätig");
  EXPECT_EQ(Copy::componentDetail("NEW", "wire", {}), "unbekannt: NEW");
  for (const auto* code : {"CREDENTIAL_UNOBSERVABLE", "CREDENTIAL", "TRUST_BUNDLE_STALE", "", "NEW"}) {
    EXPECT_FALSE(Copy::relaysWireDetail(code)) << code;
  }
}

TEST(Copy, KnowsRemediesByCodeAndLauncher) {
  struct Row {
    const char* code;
    Params params;
    std::optional<std::string> remedy;
  };
  const Row rows[] = {
      {"APP_STARTED_WITHOUT_TRUST_ENV", {"a", "b", "app"}, "Quit and reopen it."},
      {"APP_STARTED_WITHOUT_TRUST_ENV",
       {"a", "b", "service"},
       "Restart that service. Until then its downloads are blocked, not bypassed."},
      {"APP_STARTED_WITHOUT_TRUST_ENV", {"a", "app"}, "Open a new terminal window and run it again."},
      {"APP_REJECTED_LEAF", {"a", "b", "app"}, "Restart the program named above."},
      {"CA_EXPIRED", {}, "Reinstall Ostrel Agent to replace the expired device certificate."},
      {"TRUST_SEEDED_FOR_SHELL", {"zsh"}, std::nullopt},
      {"SYSEXT_IDLE", {}, std::nullopt},
      {"", {}, std::nullopt},
      {"NEW", {}, std::nullopt},
  };
  for (const auto& row : rows) EXPECT_EQ(Copy::remedy(row.code, row.params), row.remedy) << row.code;
}

TEST(Copy, JoinsListsWithoutACommaBeforeTheLastName) {
  EXPECT_EQ(Copy::listJoined({}), "");
  EXPECT_EQ(Copy::listJoined({"a"}), "a");
  EXPECT_EQ(Copy::listJoined({"a", "b"}), "a and b");
  EXPECT_EQ(Copy::listJoined({"a", "b", "", "d"}), "a, b,  and d");
  const Translated german{{"list.joiner.comma", " / "}, {"list.joiner.and", " und "}};
  EXPECT_EQ(Copy::listJoined({"a", "b", "c"}), "a / b und c");
}

TEST(Copy, TellsOfEcosystemsOffByPolicyAndTheirDirectFlows) {
  EXPECT_EQ(Copy::offNote({"npm"}, 0),
            "npm is turned off by your organization. Its traffic goes direct and is not inspected.");
  EXPECT_EQ(
      Copy::offNote({"go", "npm"}, -1),
      "go and npm are turned off by your organization. Their traffic goes direct and is not inspected.");
  EXPECT_EQ(Copy::offNote({"npm"}, 12),
            "npm is turned off by your organization. Its traffic goes direct and is not inspected. 12 "
            "connections have passed through direct since the daemon started.");
}

TEST(Copy, NamesWhatFollowsFromABrokenCredential) {
  EXPECT_EQ(Copy::consequenceCredential(""),
            "The device credential is unavailable. Installs fail closed until it is restored.");
  EXPECT_EQ(Copy::consequenceCredential("Revoked"), "Revoked. Installs fail closed until it is restored.");
}

TEST(Copy, NamesTheLauncherOfAProgramWithoutTrustSettings) {
  struct Row {
    Params params;
    std::optional<std::string> text;
  };
  const Row rows[] = {
      {{}, std::nullopt},
      {{"", "Terminal", "app"}, std::nullopt},
      {{"npm"}, "npm · old shell"},
      {{"npm", ""}, "npm · old shell"},
      {{"npm", "Terminal", ""}, "npm · old Terminal window"},
      {{"Code", "Terminal", "app"}, "Code · opened before setup"},
      {{"runner", "", "service"}, "runner · service predates setup"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Copy::runtimeTrustStaleLauncher(row.params), row.text) << testing::PrintToString(row.params);
  }
  EXPECT_EQ(Copy::runtimeTrustShellSkippedSeed({"npm", "x"}), "npm · shell skipped startup files");
  EXPECT_EQ(Copy::runtimeTrustShellSkippedSeed({""}), std::nullopt);
  EXPECT_EQ(Copy::runtimeTrustShellSkippedSeed({}), std::nullopt);
}

TEST(Copy, NamesAFileByTheLastComponentOfItsPath) {
  EXPECT_EQ(Copy::runtimeTrustCheckFile("/Users/ada/.npmrc"), "check .npmrc");
  EXPECT_EQ(Copy::runtimeTrustReadingFile(".zshrc"), "still reading .zshrc");
  struct Row {
    const char* path;
    const char* last;
  };
  constexpr Row rows[] = {{"", ""}, {"/", "/"}, {"//", "/"}, {"/a/b/", "b"}, {"a", "a"}, {"/a", "a"}};
  for (const auto& row : rows) EXPECT_EQ(lastPathComponent(row.path), row.last) << row.path;
}

TEST(Copy, CountsNotesInThePlural) {
  EXPECT_EQ(Copy::healthOKWithNotes(1), "OK, 1 note");
  EXPECT_EQ(Copy::healthOKWithNotes(2), "OK, 2 notes");
}

}  // namespace
}  // namespace ostrel
