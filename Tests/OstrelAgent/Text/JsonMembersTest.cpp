#include "OstrelAgent/Text/JsonMembers.hpp"

#include <gtest/gtest.h>

#include <limits>

namespace ostrel {
namespace {

using namespace std::string_literals;

TEST(JsonMembers, GivesEachMemberAsTheTypeItHasAndNoOther) {
  const auto members = JsonMembers::of(
                           "\xEF\xBB\xBF \n{ \"yes\" : true ,\"no\":false,\"word\":\"true\","
                           "\"n\\u00e4me\\\"\" : \"a\\\\\\\" }],{ \\n\\ud83d\\ude00\" , \"number\": 1e999 ,"
                           "\"none\":null,\"\":\"unnamed\",\"again\":1,\"again\":\"last\","
                           "\"object\" : {\"yes\":false,\"x\":[\"]\",{}]} , \"list\":[ 1, 2 ]\n}\r\n ")
                           .value_or(JsonMembers());
  EXPECT_EQ(members.boolean("yes"), true);
  EXPECT_EQ(members.boolean("no"), false);
  EXPECT_EQ(members.text("word"), "true");
  EXPECT_EQ(members.text("näme\""), "a\\\" }],{ \n😀");
  EXPECT_EQ(members.text(""), "unnamed");
  EXPECT_EQ(members.text("again"), "last");
  EXPECT_EQ(members.json("number"), "1e999");
  EXPECT_EQ(members.json("object"), R"({"yes":false,"x":["]",{}]})");
  EXPECT_EQ(members.json("list"), "[ 1, 2 ]");
  for (const auto* name : {"word", "number", "none", "object", "list", "missing", "x"}) {
    EXPECT_EQ(members.boolean(name), std::nullopt) << name;
  }
  for (const auto* name : {"yes", "number", "none", "object", "list", "missing", "x"}) {
    EXPECT_EQ(members.text(name), std::nullopt) << name;
  }
}

TEST(JsonMembers, AnIntegerIsWrittenAsOneAndFitsInto64Bits) {
  const std::pair<const char*, std::optional<std::int64_t>> rows[] = {
      {"0", 0},
      {"-61", -61},
      {"9223372036854775807", std::numeric_limits<std::int64_t>::max()},
      {"9223372036854775808", std::nullopt},
      {"61.0", std::nullopt},
      {"61e0", std::nullopt},
      {"\"61\"", std::nullopt},
      {"true", std::nullopt},
      {"null", std::nullopt},
      {"[61]", std::nullopt},
  };
  for (const auto& [json, integer] : rows) {
    const auto members = JsonMembers::of(R"({"n":)" + std::string(json) + "}").value_or(JsonMembers());
    EXPECT_EQ(members.integer("n"), integer) << json;
    EXPECT_EQ(members.integer("m"), std::nullopt);
  }
}

TEST(JsonMembers, OnlyOneObjectOfWellFormedJsonIsRead) {
  const std::string depth(4000000, '[');
  const std::pair<std::string, bool> rows[] = {
      {"{}", true},
      {"", false},
      {" \n", false},
      {"\xEF\xBB\xBF", false},
      {"[]", false},
      {"[{}]", false},
      {"7", false},
      {"null", false},
      {"\"{}\"", false},
      {"{", false},
      {R"({"a")", false},
      {R"({"a":)", false},
      {R"({"a":1)", false},
      {R"({"a":1,})", false},
      {R"({"a":"})", false},
      {R"({"a":"\)", false},
      {R"({"a":[}])", false},
      {R"({a:1})", false},
      {"{}{}", false},
      {"{}x", false},
      {"{}\0"s, false},
      {"{\"a\":\"\xff\"}", false},
      {"{\"\xc3\":1}", false},
      {R"({"a":"\ud800"})", false},
      {"{\"a\":" + depth, false},
      {"{\"a\":" + depth + std::string(depth.size(), ']') + "}", true},
  };
  for (const auto& [bytes, isObject] : rows) {
    EXPECT_EQ(JsonMembers::of(bytes).has_value(), isObject) << bytes.substr(0, 40);
  }
}

}  // namespace
}  // namespace ostrel
