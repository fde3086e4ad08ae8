#include "OstrelAgent/Text/TextFormat.hpp"

#include <gtest/gtest.h>

namespace ostrel {
namespace {

TEST(TextFormat, FillsArgumentsInByOrderOrNumber) {
  constexpr std::pair<const char*, const char*> rows[] = {
      {"%@ has %d, 100%", "a has 7, 100%"},
      {"%2$d of %1$@%1$@ · é", "7 of aa · é"},
      {"%%@ %%%@", "%@ %a"},
      {"%d %@ %@|%9$d|", "a 7 ||"},
      {"%0$@ %10$@ %1$x %x %1$ %1", "%0$@ %10$@ %1$x %x %1$ %1"},
  };
  for (const auto& [format, text] : rows) EXPECT_EQ(formatText(format, {"a", std::int64_t{7}}), text);
  EXPECT_EQ(formatText("%@ %@", {"%2$@", "%d"}), "%2$@ %d");
  EXPECT_EQ(formatText("%d", {INT64_MIN}), "-9223372036854775808");
}

TEST(TextFormat, ComparesSpecifiersWhateverTheirOrder) {
  EXPECT_EQ(formatSpecifiers("%@ of %d"), formatSpecifiers("%2$d: %1$@"));
  EXPECT_NE(formatSpecifiers("%@ of %d"), formatSpecifiers("%d of %@"));
  EXPECT_NE(formatSpecifiers("%@"), formatSpecifiers("%1$@ %1$@"));
  EXPECT_TRUE(formatSpecifiers("%%@ 50% of %%d").empty());
}

}  // namespace
}  // namespace ostrel
