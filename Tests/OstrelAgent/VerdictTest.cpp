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
    const char* tooltip;
    MenuBarBadge badge;
    const char* symbol;
  };
  using enum MenuBarBadge;
  constexpr Row rows[] = {
      {"protected", 0, "Protected", "Ostrel Agent: protected", dot, "checkmark.shield.fill"},
      {"protected", -1, "Protected", "Ostrel Agent: protected", dot, "checkmark.shield.fill"},
      {"protected", 1, "Protected, 1 off", "Ostrel Agent: protected, 1 off", dot, "shield"},
      {"protected", 3, "Protected, 3 off", "Ostrel Agent: protected, 3 off", dot, "shield"},
      {"degraded", 3, "Needs attention", "Ostrel Agent: degraded", square, "exclamationmark.triangle.fill"},
      {"not_protected", 3, "Not protected", "Ostrel Agent: not protected", octagon,
       "exclamationmark.shield.fill"},
      {"", 3, "Not reported", "Ostrel Agent: status not reported", square, "exclamationmark.triangle.fill"},
      {"Protected", 0, "Not reported", "Ostrel Agent: status not reported", square,
       "exclamationmark.triangle.fill"},
      {"degraded ", 0, "Not reported", "Ostrel Agent: status not reported", square,
       "exclamationmark.triangle.fill"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << row.wire << ' ' << row.off);
    const auto verdict = ProtectionVerdict::fromWire(row.wire, row.off);
    EXPECT_EQ(verdict.headerText(), row.word);
    EXPECT_EQ(verdict.menuBarDescription(), row.tooltip);
    EXPECT_EQ(MenuBarIcon::of(verdict), (MenuBarIcon{row.badge, row.symbol, row.tooltip}));
  }
}

TEST(Verdict, CountsEcosystemsOffByPolicyOnlyWithoutTheDaemonsWord) {
  auto snapshot = readings::healthy();
  snapshot.guardEcosystems = {{"npm", "off_by_policy"}, {"go", "off_by_policy"}, {"pypi", "Off_by_policy"}};
  EXPECT_EQ(snapshot.offByPolicyCount(), 0);
  EXPECT_EQ(ProtectionVerdict::of(snapshot).headerText(), "Protected");
  snapshot.offByPolicy = 5;
  EXPECT_EQ(ProtectionVerdict::of(snapshot).headerText(), "Protected, 5 off");
  snapshot.verdict.clear();
  EXPECT_EQ(snapshot.offByPolicyCount(), 2);
  EXPECT_EQ(ProtectionVerdict::of(snapshot).headerText(), "Not reported");
}

}  // namespace
}  // namespace ostrel
