#include "OstrelAgent/RuntimeTrustRow.hpp"

#include <gtest/gtest.h>

#include "Tests/OstrelAgent/Readings.hpp"

namespace ostrel {
namespace {

TEST(RuntimeTrustRow, NamesTheCauseByCodeAndParameters) {
  const auto ok = RowState::ok;
  const auto warn = RowState::warn;
  const std::string untrusted = "a tool doesn't trust the device certificate";
  const std::string rejected = "a program rejected the device certificate";
  struct Row {
    const char* state;
    const char* code;
    std::vector<std::string> params;
    RowState row;  ///< of severity "yellow"
  };
  const Row rows[] = {
      {"", "APP_REJECTED_LEAF", {"node"}, RowState::info("not reported")},
      {"ok", "", {}, ok("covered")},
      {"ok", "APP_REJECTED_LEAF", {"node"}, ok("covered")},
      {"ok", "TRUST_VERIFIED_BY_TRAFFIC", {}, ok("verified by traffic")},
      {"ok", "TRUST_TRUSTED_WITHOUT_KNOB", {}, ok("verified by traffic")},
      {"ok", "TRUST_SEEDED_FOR_SHELL", {"zsh", "x"}, ok("set for zsh")},
      {"ok", "TRUST_SEEDED_FOR_SHELL", {"", "x"}, ok("covered")},
      {"ok", "TRUST_SEEDED_FOR_SHELL", {}, ok("covered")},
      {"ok", "TRUST_KNOBS_NOT_REQUIRED", {}, ok("not needed here")},
      {"broken", "TRUST_KNOB_OVERRIDE_SUSPECTED", {"NODE", "/Users/ada/.npmrc"}, warn("check .npmrc")},
      {"broken", "TRUST_KNOB_OVERRIDE_SUSPECTED", {"/a/.npmrc", "NODE"}, warn("check .npmrc")},
      {"broken", "TRUST_KNOB_OVERRIDE_SUSPECTED", {"", ""}, warn(untrusted)},
      {"unknown", "TRUST_RC_FILE_UNSCANNED", {".zshrc"}, warn("still reading .zshrc")},
      {"broken", "TRUST_ENV_SHELL_UNRESPONSIVE", {"/bin/zsh"}, warn("zsh didn't answer the check")},
      {"broken", "TRUST_ENV_SHELL_UNRESPONSIVE", {}, warn(untrusted)},
      {"broken",
       "APP_REJECTED_LEAF",
       {"node", "", "pip"},
       warn("node and pip rejected the device certificate")},
      {"broken", "APP_REJECTED_LEAF", {""}, warn(rejected)},
      {"broken",
       "CONTAINER_REJECTED_LEAF",
       {"Podman"},
       warn("Podman (container) rejected the device certificate")},
      {"broken", "CONTAINER_REJECTED_LEAF", {}, warn(rejected)},
      {"broken", "CLIENT_REJECTED_LEAF", {"node"}, warn(rejected)},
      {"broken", "APP_STARTED_WITHOUT_TRUST_ENV", {"npm", "Terminal"}, warn("npm · old Terminal window")},
      {"broken", "APP_STARTED_WITHOUT_TRUST_ENV", {"", "Terminal"}, warn(untrusted)},
      {"broken", "APP_SHELL_SKIPPED_TRUST_SEED", {"npm"}, warn("npm · shell skipped startup files")},
      {"broken", "TRUST_BUNDLE_MISSING", {}, warn("trust bundle missing")},
      {"broken", "TRUST_BUNDLE_STALE", {}, warn("trust bundle out of date")},
      {"broken", "TRUST_BUNDLE_NOT_ROOT_OWNED", {}, warn("trust bundle needs restoring")},
      {"broken", "TRUST_KNOB_UNCOVERED", {"zsh"}, warn("not set for zsh")},
      {"broken", "NEW", {"zsh"}, warn(untrusted)},
      {"unknown", "NEW", {}, warn("unknown")},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(runtimeTrustState(readings::health(row.state, "yellow", row.code, row.params)), row.row)
        << row.state << ' ' << row.code << testing::PrintToString(row.params);
  }
}

TEST(RuntimeTrustRow, IsWeighedOnItsSeverity) {
  const auto row = [](const char* state, const char* severity) {
    return runtimeTrustState(readings::health(state, severity, "TRUST_BUNDLE_STALE")).kind;
  };
  EXPECT_EQ(row("broken", ""), RowState::Case::bad);
  EXPECT_EQ(row("broken", "red"), RowState::Case::bad);
  EXPECT_EQ(row("unknown", "purple"), RowState::Case::bad);
  EXPECT_EQ(row("unknown", "info"), RowState::Case::off);
}

}  // namespace
}  // namespace ostrel
