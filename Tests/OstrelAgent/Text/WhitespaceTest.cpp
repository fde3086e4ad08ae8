#include "OstrelAgent/Text/Whitespace.hpp"

#include <gtest/gtest.h>

namespace ostrel {
namespace {

TEST(Whitespace, TrimsBlanksAndLineEndsOfAllKindsAtBothEndsOnly) {
  const std::pair<std::string_view, std::string_view> rows[] = {
      {"", ""},
      {" \t\r\n", ""},
      {"a b", "a b"},
      {" \u00A0\u2003a\n\u3000b\u2028\u0085\v", "a\n\u3000b"},
      {"\u200Ba", "\u200Ba"},
      {"\xC2", "\xC2"},
  };
  for (const auto& [text, inner] : rows) EXPECT_EQ(trimmed(text), inner) << text;
}

TEST(Whitespace, ALineEndIsNotBlank) {
  EXPECT_TRUE(isBlank(""));
  EXPECT_TRUE(isBlank("\t \u00A0\u205F"));
  EXPECT_FALSE(isBlank(" \r"));
  EXPECT_FALSE(isBlank("\u00A0."));
}

}  // namespace
}  // namespace ostrel
