#include "OstrelAgent/Utf8.hpp"

#include <gtest/gtest.h>

namespace ostrel {
namespace {

using namespace std::string_view_literals;

TEST(Utf8, IsWhatTheEncodingAllowsAndNothingElse) {
  struct Row {
    std::string_view bytes;
    bool isUtf8;
  };
  constexpr Row rows[] = {
      {""sv, true},
      {"a\0\x7F"sv, true},
      {"\x80"sv, false},
      {"\xC1\xBF"sv, false},
      {"\xC2\x80\xDF\xBF"sv, true},
      {"\xC2"sv, false},
      {"\xC2\xC0"sv, false},
      {"\xE0\x9F\xBF"sv, false},
      {"\xE0\xA0\x80"sv, true},
      {"\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF"sv, true},
      {"\xED\xA0\x80"sv, false},
      {"\xED\xBF\xBF"sv, false},
      {"\xE2\x82"sv, false},
      {"\xE2\x82\x2C"sv, false},
      {"\xF0\x8F\xBF\xBF"sv, false},
      {"\xF0\x90\x80\x80"sv, true},
      {"\xF4\x8F\xBF\xBF"sv, true},
      {"\xF4\x90\x80\x80"sv, false},
      {"\xF0\x9F\x9B"sv, false},
      {"\xF5\x80\x80\x80"sv, false},
      {"ok \xFF"sv, false},
  };
  for (const auto& row : rows) EXPECT_EQ(isUtf8(row.bytes), row.isUtf8) << testing::PrintToString(row.bytes);
}

TEST(Utf8, WritesEachLengthAtItsBounds) {
  std::string text;
  for (const char32_t point : {0x7F, 0x80, 0x7FF, 0x800, 0xFFFF, 0x10000, 0x10FFFF}) appendUtf8(text, point);
  EXPECT_EQ(text,
            "\x7F"
            "\xC2\x80\xDF\xBF"
            "\xE0\xA0\x80\xEF\xBF\xBF"
            "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF");
}

}  // namespace
}  // namespace ostrel
