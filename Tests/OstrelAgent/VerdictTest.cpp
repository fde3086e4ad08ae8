#include "OstrelAgent/Verdict.hpp"

#include <gtest/gtest.h>

#include "Tests/OstrelAgent/Readings.hpp"

namespace ostrel {
namespace {

TEST(Verdict, FollowsTheDaemonsWordExactly) {
  struct Row {
    const char* wire;
    std::int64_t off;
    const char* word;
    MenuBarIcon icon;
  };
  using enum MenuBarBadge;
  const MenuBarIcon unreported{square, "exclamationmark.triangle.fill", "Ostrel Agent: status not reported"};
  const Row rows[] = {
      {"protected", 0, "Protected", {dot, "checkmark.shield.fill", "Ostrel Agent: protected"}},
      {"protected", -1, "Protected", {dot, "checkmark.shield.fill", "Ostrel Agent: protected"}},
      {"protected", 1, "Protected, 1 off", {dot, "shield", "Ostrel Agent: protected, 1 off"}},
      {"degraded", 3, "Needs attention", {square, "exclamationmark.triangle.fill", "Ostrel Agent: degraded"}},
      {"not_protected",
       3,
       "Not protected",
       {octagon, "exclamationmark.shield.fill", "Ostrel Agent: not protected"}},
      {"", 3, "Not reported", unreported},
      {"Protected", 0, "Not reported", unreported},
      {"degraded ", 0, "Not reported", unreported},
  };
  for (const auto& row : rows) {
    const auto verdict = ProtectionVerdict::fromWire(row.wire, row.off);
    EXPECT_EQ(verdict.headerText(), row.word) << row.wire << row.off;
    EXPECT_EQ(MenuBarIcon::of(verdict), row.icon) << row.wire << row.off;
  }
}

TEST(Verdict, CountsEcosystemsOffByPolicyOnlyWithoutTheDaemonsWord) {
  auto snapshot = readings::healthy();
  snapshot.guardEcosystems = {{"npm", "off_by_policy"}, {"go", "off_by_policy"}, {"pypi", "Off_by_policy"}};
  EXPECT_EQ(ProtectionVerdict::of(snapshot).headerText(), "Protected");
  snapshot.offByPolicy = 5;
  EXPECT_EQ(ProtectionVerdict::of(snapshot).headerText(), "Protected, 5 off");
  snapshot.verdict.clear();
  EXPECT_EQ(snapshot.offByPolicyCount(), 2);
  EXPECT_EQ(ProtectionVerdict::of(snapshot).headerText(), "Not reported");
}

}  // namespace
}  // namespace ostrel
