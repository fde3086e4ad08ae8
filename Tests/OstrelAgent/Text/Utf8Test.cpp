#include "OstrelAgent/Text/Utf8.hpp"

#include <gtest/gtest.h>

namespace ostrel {
namespace {

using namespace std::string_view_literals;

TEST(Utf8, AcceptsOnlyWhatTheEncodingAllows) {
  EXPECT_TRUE(isUtf8(""));
  EXPECT_TRUE(
      isUtf8("\0\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF\xF0\x90\x80\x80"
             "\xF4\x8F\xBF\xBF"sv));
  for (const auto bytes : {"\x80"sv, "\xC1\xBF"sv, "\xC2"sv, "\xC2\xC0"sv, "\xE0\x9F\xBF"sv, "\xED\xA0\x80"sv,
                           "\xED\xBF\xBF"sv, "\xE2\x82"sv, "\xE2\x82\x2C"sv, "\xF0\x8F\xBF\xBF"sv,
                           "\xF4\x90\x80\x80"sv, "\xF0\x9F\x9B"sv, "\xF5\x80\x80\x80"sv, "ok \xFF"sv}) {
    EXPECT_FALSE(isUtf8(bytes)) << testing::PrintToString(bytes);
  }
}

TEST(Utf8, WritesEachLengthAtItsBounds) {
  std::string text;
  for (const auto point : U"\u007F\u0080\u07FF\u0800\uFFFF\U00010000\U0010FFFF"sv) appendUtf8(text, point);
  EXPECT_EQ(text, "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF");
}

}  // namespace
}  // namespace ostrel
