#include "OstrelAgent/Text/TextDirection.hpp"

#include <gtest/gtest.h>

#include <utility>

namespace ostrel {
namespace {

TEST(TextDirection, IsThatOfTheFirstLetter) {
  const std::pair<const char*, bool> rows[] = {
      {"", false},           {"Protected", false},  {"⋯ 12 %", false},   {"Žádná", false},
      {"保護", false},       {"محمي", true},        {"מוגן", true},      {"1 · «מוגן» OK", true},
      {"%@ / ٣ محمي", true}, {"OK محمي", false},    {"\xD7", false},     {"🛡️ محمي", true},
      {"\u200F1", true},     {"\u200Eמוגן", false}, {"\xFF\xFF", false}, {"𞤀", true},
  };
  for (const auto& [text, isRightToLeft] : rows) {
    EXPECT_EQ(directionOf(text) == TextDirection::rightToLeft, isRightToLeft) << text;
  }
}

}  // namespace
}  // namespace ostrel
