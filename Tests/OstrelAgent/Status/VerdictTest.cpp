#include "OstrelAgent/Status/MenuBarIcon.hpp"
#include "OstrelAgent/Status/Verdict.hpp"

#include <gtest/gtest.h>

#include "Tests/OstrelAgent/SnapshotBuilders.hpp"

namespace ostrel {
namespace {

constexpr const char* shield = "\xF0\x9F\x9B\xA1";
constexpr const char* warning = "\xE2\x9A\xA0\xEF\xB8\x8F";

TEST(Verdict, FollowsTheDaemonsWordExactly) {
  struct Row {
    const char* wire;
    std::int64_t off;
    const char* word;
    const char* text;
    VerdictSymbols sign;
  };
  using enum MenuBarBadge;
  const VerdictSymbols triangle{square, "exclamationmark.triangle.fill", warning};
  const char* unreported = "Ostrel Agent: status not reported";
  const Row rows[] = {
      {"protected", 0, "Protected", "Ostrel Agent: protected", {dot, "checkmark.shield.fill", shield}},
      {"protected", -1, "Protected", "Ostrel Agent: protected", {dot, "checkmark.shield.fill", shield}},
      {"protected", 1, "Protected, 1 off", "Ostrel Agent: protected, 1 off", {dot, "shield", shield}},
      {"degraded", 3, "Needs attention", "Ostrel Agent: degraded", triangle},
      {"not_protected",
       3,
       "Not protected",
       "Ostrel Agent: not protected",
       {octagon, "exclamationmark.shield.fill", warning}},
      {"", 3, "Not reported", unreported, triangle},
      {"Protected", 0, "Not reported", unreported, triangle},
      {"degraded ", 0, "Not reported", unreported, triangle},
  };
  for (const auto& row : rows) {
    const auto verdict = ProtectionVerdict::fromWire(row.wire, row.off);
    EXPECT_EQ(verdict.headerText(), row.word) << row.wire << row.off;
    EXPECT_EQ(verdict.menuBarDescription(), row.text) << row.wire << row.off;
    EXPECT_EQ(VerdictSymbols::of(verdict), row.sign) << row.wire << row.off;
  }
}

TEST(Verdict, ShowsTheBestPictureThatTheMenuBarHas) {
  const auto verdict = ProtectionVerdict::fromWire("not_protected", 0);
  const auto dark = MenuBarPalette::matching(Appearance::dark);
  const auto picture = [&](bool hasGlyph, bool hasSymbol) {
    return MenuBarIcon::of(verdict, dark, hasGlyph, hasSymbol).picture;
  };
  const MenuBarPicture glyph = menubarpicture::Glyph{MenuBarBadge::octagon, dark};
  EXPECT_EQ(picture(true, true), glyph);
  EXPECT_EQ(picture(true, false), glyph);
  EXPECT_EQ(picture(false, true), MenuBarPicture(menubarpicture::Symbol{"exclamationmark.shield.fill"}));
  EXPECT_EQ(picture(false, false),
            MenuBarPicture(menubarpicture::Title{warning, MenuBarBadge::octagon, dark}));
  EXPECT_EQ(MenuBarIcon::of(verdict, dark, false, false).text, "Ostrel Agent: not protected");
  EXPECT_EQ(MenuBarPalette::matching(std::nullopt), MenuBarPalette::matching(Appearance::light));
}

TEST(Verdict, CountsEcosystemsOffByPolicyOnlyWithoutTheDaemonsWord) {
  auto snapshot = builders::healthy();
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
