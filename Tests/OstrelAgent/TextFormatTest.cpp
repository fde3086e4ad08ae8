#include "OstrelAgent/TextFormat.hpp"

#include <gtest/gtest.h>

#include <limits>

namespace ostrel {
namespace {

TEST(TextFormat, FillsArgumentsInByOrderOrNumber) {
  struct Row {
    const char* format;
    const char* text;  ///< with "a" and 7
  };
  constexpr Row rows[] = {
      {"", ""},
      {"100%", "100%"},
      {"%@ has %d", "a has 7"},
      {"%2$d of %1$@", "7 of a"},
      {"%1$@%1$@ · é", "aa · é"},
      {"%%@ %%%@", "%@ %a"},
      {"%@ %d %@|", "a 7 |"},
      {"%3$@|%9$d|", "||"},
      {"%d %@", "a 7"},
      {"%0$@ %10$@ %1$x %1$ %1", "%0$@ %10$@ %1$x %1$ %1"},
      {"%x %", "%x %"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(formatText(row.format, {"a", std::int64_t{7}}), row.text) << row.format;
  }
}

TEST(TextFormat, NeitherExpandsArgumentsAgainNorGroupsIntegers) {
  EXPECT_EQ(formatText("%@ %@", {"%2$@", "%d"}), "%2$@ %d");
  EXPECT_EQ(formatText("%d", {std::numeric_limits<std::int64_t>::min()}), "-9223372036854775808");
  EXPECT_EQ(formatText("%d", {std::int64_t{1234567}}), "1234567");
}

TEST(TextFormat, ComparesSpecifiersWhateverTheirOrder) {
  EXPECT_EQ(formatSpecifiers("%@ of %d"), formatSpecifiers("%2$d: %1$@"));
  EXPECT_NE(formatSpecifiers("%@ of %d"), formatSpecifiers("%d of %@"));
  EXPECT_NE(formatSpecifiers("%@"), formatSpecifiers("%1$@ %1$@"));
  EXPECT_TRUE(formatSpecifiers("%%@ 50% of %%d").empty());
}

}  // namespace
}  // namespace ostrel
