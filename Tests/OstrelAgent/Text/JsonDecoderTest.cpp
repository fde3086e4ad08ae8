#include "OstrelAgent/Text/JsonDecoder.hpp"

#include <gtest/gtest.h>

namespace ostrel {
namespace {

struct Item {
  std::string id;
  std::optional<bool> on;

  bool operator==(const Item&) const = default;
};

struct Shape {
  std::string name;
  std::optional<std::int64_t> count;
  std::optional<std::vector<std::string>> tags;
  std::optional<Item> item;
  std::optional<std::vector<Item>> items;

  bool operator==(const Shape&) const = default;
};

constexpr JsonField itemFields[] = {JsonFields<Item>::field<&Item::id>("id"),
                                    JsonFields<Item>::field<&Item::on>("on")};
constexpr JsonObject itemLayout{itemFields};
constexpr JsonField shapeFields[] = {JsonFields<Shape>::field<&Shape::name>("name"),
                                     JsonFields<Shape>::field<&Shape::count>("count"),
                                     JsonFields<Shape>::field<&Shape::tags>("tags"),
                                     JsonFields<Shape>::field<&Shape::item>("item", &itemLayout),
                                     JsonFields<Shape>::field<&Shape::items>("items", &itemLayout)};
constexpr JsonObject shapeLayout{shapeFields};

/// What a document reads as, and why it is refused; empty when it is not.
std::pair<Shape, std::string> decode(std::string_view bytes) {
  Shape shape;
  const auto decoded = decodeJson(bytes, shapeLayout, &shape);
  return {shape, decoded ? "" : decoded.error().description()};
}

std::string errorOf(std::string_view bytes) { return decode(bytes).second; }

/// A document with a name and what else is given.
std::string named(std::string_view rest) { return R"({"name":"a",)" + std::string(rest) + "}"; }

TEST(JsonDecoder, ReadsWhatFitsTheLayoutAndTheLastOfARepeatedKey) {
  const Item x{"x", {}};
  const std::pair<const char*, Shape> rows[] = {
      {R"("name":"\u00e4\ud83d\udee1\n\"")", {"ä🛡\n\"", {}, {}, {}, {}}},
      {R"("count":null,"tags":null,"item":null,"items":null)", {"a", {}, {}, {}, {}}},
      {R"("tags":[],"items":[],"count":-0)", {"a", 0, {{}}, {}, {{}}}},
      {R"("items":[{"id":"x"},{"on":true,"id":"y"}],"item":{"id":"z","on":null},"tags":["t",""])",
       {"a", {}, {{"t", ""}}, Item{"z", {}}, {{x, {"y", true}}}}},
      {R"("Count":"x","":0,"naïve":[{"name":7}],"item":{"name":[],"count":{},"id":"x"})",
       {"a", {}, {}, x, {}}},
      {R"("count":9223372036854775807)", {"a", INT64_MAX, {}, {}, {}}},
      {R"("count":-9223372036854775808)", {"a", INT64_MIN, {}, {}, {}}},
      {R"("x":[1e400,-1E+999,18446744073709551616],"tags":["\":1e400","\\",":2e999"])",
       {"a", {}, {{"\":1e400", "\\", ":2e999"}}, {}, {}}},
      {R"("name":7,"name":"b")", {"b", {}, {}, {}, {}}},
      {R"("item":{"id":"y","on":true},"item":{"id":"x"})", {"a", {}, {}, x, {}}},
      {R"("item":[{"id":7}],"item":{"id":7,"id":[],"id":"x"})", {"a", {}, {}, x, {}}},
      {R"("item":{"on":1},"count":1.5,"item":{"id":"x"},"count":null)", {"a", {}, {}, x, {}}},
      {R"("items":[{"id":"y"},{}],"items":[{"id":1,"id":"x"}])", {"a", {}, {}, {}, {{x}}}},
  };
  for (const auto& [rest, shape] : rows)
    EXPECT_EQ(decode(named(rest)), std::pair(shape, std::string())) << rest;
}

TEST(JsonDecoder, SaysWhereAndWhyItRefusesADocument) {
  const std::pair<const char*, const char*> rows[] = {
      {R"("name":null)", "name is not a text"},
      {R"("count":1.0)", "count is not a whole number of 64 bits"},
      {R"("count":1e400)", "count is not a whole number of 64 bits"},
      {R"("count":9223372036854775808)", "count is not a whole number of 64 bits"},
      {R"("count":-9223372036854775809)", "count is not a whole number of 64 bits"},
      {R"("count":1,"count":true)", "count is not a whole number of 64 bits"},
      {R"("tags":{})", "tags is not a list"},
      {R"("tags":["a",null])", "tags[1] is not a text"},
      {R"("item":[])", "item is not an object"},
      {R"("item":{},"item":{"id":"x"},"item":{})", "item.id is missing"},
      {R"("item":{},"items":[{}],"item":{"id":"x"})", "items[0].id is missing"},
      {R"("item":{"id":"x","on":0})", "item.on is not true or false"},
      {R"("items":[{"id":"x"},{"id":"y"},{"id":{"id":1}}])", "items[2].id is not a text"},
      {R"("items":[{"id":1},null])", "items[0].id is not a text"},
      {R"("items":[[{"id":"x"}]])", "items[0] is not an object"},
      {"\n\"count\": x", "the document is not JSON (line 2, column 10)"},
  };
  for (const auto& [rest, error] : rows) EXPECT_EQ(errorOf(named(rest)), error) << rest;
  EXPECT_EQ(errorOf("{}"), "name is missing");
  for (const auto* root : {"[]", "[{\"name\":\"a\"}]", "null", "true", "1", "0.5", "\"name\""}) {
    EXPECT_EQ(errorOf(root), "the document is not an object") << root;
  }
}

TEST(JsonDecoder, RefusesWhatIsNotJsonAlsoInSkippedParts) {
  EXPECT_EQ(errorOf(" {\"name\" : \"a\"}\r\n"), "");
  for (const std::string_view bytes :
       {"", " ", "{\"name\":\"a\"}x", "{\"name\":\"a\"} {}", "{\"name\":\"a\tb\"}", "{\"name\":\"a\xFF\"}",
        "{\"name\":\"a\"/**/}"}) {
    EXPECT_NE(errorOf(bytes), "") << bytes;
  }
  EXPECT_NE(errorOf(std::string_view("{\"name\":\"a\"}\0,", 14)), "");
  for (const auto* rest : {"", "\"x\":01", "\"x\":NaN", "\"x\":[1,]", "\"x\":1 \"y\":2", R"("x":"\x")",
                           R"("x":"\ud83d")", "\"x\":\"\xC0\x80\"", "\"\xED\xA0\x80\":1"}) {
    EXPECT_NE(errorOf(named(rest)), "") << rest;
  }
}

std::string repeated(std::string_view text, std::size_t times) {
  std::string all;
  for (std::size_t i = 0; i < times; ++i) all += text;
  return all;
}

TEST(JsonDecoder, SurvivesDeepNestingAndManyFaults) {
  constexpr std::size_t depth = 100'000;
  const auto lists = repeated("[", depth) + repeated("]", depth);
  const auto objects = repeated(R"({"name":)", depth) + "7" + repeated("}", depth);
  for (const auto& nested : {lists, objects}) {
    EXPECT_EQ(errorOf(named("\"x\":" + nested)), "");
    EXPECT_EQ(errorOf(named("\"item\":{\"id\":" + nested + "}")), "item.id is not a text");
  }
  EXPECT_EQ(errorOf(lists), "the document is not an object");
  EXPECT_NE(errorOf(repeated("[", depth)), "");
  const auto broken = "\"items\":[{\"id\":\"x\"}" + repeated(",{}", depth) + "],\"count\":\"1\"";
  EXPECT_EQ(errorOf(named(broken)), "items[1].id is missing");
}

}  // namespace
}  // namespace ostrel
