#include "OstrelAgent/Panel/RuntimeTrustRow.hpp"

#include <gtest/gtest.h>

#include "Tests/OstrelAgent/SnapshotBuilders.hpp"

namespace ostrel {
namespace {

TEST(RuntimeTrustRow, NamesTheCauseByCodeAndParameters) {
  struct Row {
    const char* state;
    const char* code;
    std::vector<std::string> params;
    const char* row;  ///< of severity "yellow"
  };
  const Row rows[] = {
      {"", "APP_REJECTED_LEAF", {"node"}, "info not reported"},
      {"ok", "APP_REJECTED_LEAF", {"node"}, "ok covered"},
      {"ok", "TRUST_VERIFIED_BY_TRAFFIC", {}, "ok verified by traffic"},
      {"ok", "TRUST_SEEDED_FOR_SHELL", {"zsh", "x"}, "ok set for zsh"},
      {"ok", "TRUST_SEEDED_FOR_SHELL", {"", "x"}, "ok covered"},
      {"ok", "TRUST_KNOBS_NOT_REQUIRED", {}, "ok not needed here"},
      {"broken", "TRUST_KNOB_OVERRIDE_SUSPECTED", {"NODE", "/Users/ada/.npmrc"}, "warn check .npmrc"},
      {"broken", "TRUST_KNOB_OVERRIDE_SUSPECTED", {"/a/.npmrc", "NODE"}, "warn check .npmrc"},
      {"broken", "TRUST_KNOB_OVERRIDE_SUSPECTED", {""}, "warn a tool doesn't trust the device certificate"},
      {"unknown", "TRUST_RC_FILE_UNSCANNED", {"zsh", ".zshrc"}, "warn still reading .zshrc"},
      {"broken", "TRUST_ENV_SHELL_UNRESPONSIVE", {"/bin/zsh"}, "warn zsh didn't answer the check"},
      {"broken", "APP_REJECTED_LEAF", {"a", "", "b"}, "warn a and b rejected the device certificate"},
      {"broken", "APP_REJECTED_LEAF", {""}, "warn a program rejected the device certificate"},
      {"broken", "CONTAINER_REJECTED_LEAF", {"a"}, "warn a (container) rejected the device certificate"},
      {"broken", "CLIENT_REJECTED_LEAF", {"a"}, "warn a program rejected the device certificate"},
      {"broken", "APP_STARTED_WITHOUT_TRUST_ENV", {"npm"}, "warn npm · old shell"},
      {"broken", "APP_STARTED_WITHOUT_TRUST_ENV", {"npm", "Terminal"}, "warn npm · old Terminal window"},
      {"broken", "APP_STARTED_WITHOUT_TRUST_ENV", {"a", "b", "app"}, "warn a · opened before setup"},
      {"broken", "APP_STARTED_WITHOUT_TRUST_ENV", {"a", "", "service"}, "warn a · service predates setup"},
      {"broken", "APP_STARTED_WITHOUT_TRUST_ENV", {}, "warn a tool doesn't trust the device certificate"},
      {"broken", "APP_SHELL_SKIPPED_TRUST_SEED", {"npm"}, "warn npm · shell skipped startup files"},
      {"broken", "TRUST_BUNDLE_MISSING", {}, "warn trust bundle missing"},
      {"broken", "TRUST_KNOB_UNCOVERED", {"zsh"}, "warn not set for zsh"},
      {"broken", "NEW", {"zsh"}, "warn a tool doesn't trust the device certificate"},
      {"unknown", "NEW", {}, "warn unknown"},
  };
  for (const auto& [state, code, params, row] : rows) {
    EXPECT_EQ(builders::describe(runtimeTrustState(builders::health(state, "yellow", code, params))), row)
        << code;
  }
}

TEST(RuntimeTrustRow, FollowsItsSeverity) {
  const std::pair<const char*, const char*> rows[] = {
      {"", "bad"}, {"red", "bad"}, {"x", "bad"}, {"info", "off"}};
  for (const auto& [severity, word] : rows) {
    EXPECT_EQ(nameOf(runtimeTrustState(builders::health("broken", severity, "TRUST_BUNDLE_STALE")).kind),
              word);
  }
}

}  // namespace
}  // namespace ostrel
