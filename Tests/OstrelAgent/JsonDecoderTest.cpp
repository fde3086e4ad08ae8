#include "OstrelAgent/JsonDecoder.hpp"

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

void PrintTo(const std::expected<Shape, std::string>& shape, std::ostream* out) {
  *out << (shape ? "a shape" : shape.error());
}

std::expected<Shape, std::string> decode(std::string_view bytes) {
  Shape shape;
  const auto decoded = decodeJson(bytes, shapeLayout, &shape);
  if (!decoded) return std::unexpected(decoded.error().description());
  return shape;
}

/// A document with a name and what else is given.
std::string named(std::string_view rest) { return R"({"name":"a",)" + std::string(rest) + "}"; }

TEST(JsonDecoder, ReadsWhatFitsTheLayout) {
  struct Row {
    std::string bytes;
    Shape shape;
  };
  const Row rows[] = {
      {R"( {"name" : "a"} )", {"a", {}, {}, {}, {}}},
      {R"({"name":"\u00e4\ud83d\udee1\n\"\u0000"})", {std::string("ä🛡\n\"\0", 9), {}, {}, {}, {}}},
      {named(R"("count":null,"tags":null,"item":null,"items":null)"), {"a", {}, {}, {}, {}}},
      {named(R"("tags":[],"items":[])"), {"a", {}, {{}}, {}, {{}}}},
      {R"({"items":[{"id":"x"},{"on":true,"id":"y"}],"item":{"id":"z","on":null},"tags":["t",""],"name":"a"})",
       {"a", {}, {{"t", ""}}, Item{"z", {}}, {{{"x", {}}, {"y", true}}}}},
      {named(R"("Count":"x","":0,"naïve":[{"name":7}],"other":{"name":[],"id":{}})"), {"a", {}, {}, {}, {}}},
      {named(R"("count":0)"), {"a", 0, {}, {}, {}}},
      {named(R"("count":-0)"), {"a", 0, {}, {}, {}}},
      {named(R"("count":9223372036854775807)"), {"a", INT64_MAX, {}, {}, {}}},
      {named(R"("count":-9223372036854775808)"), {"a", INT64_MIN, {}, {}, {}}},
  };
  for (const auto& row : rows) EXPECT_EQ(decode(row.bytes), row.shape) << row.bytes;
}

TEST(JsonDecoder, SaysWhereAndWhyItRefusesADocument) {
  struct Row {
    std::string bytes;
    const char* error;
  };
  const Row rows[] = {
      {"{}", "name is missing"},
      {"[]", "the document is not an object"},
      {"null", "the document is not an object"},
      {"\"name\"", "the document is not an object"},
      {R"({"name":null})", "name is not a text"},
      {R"({"name":["a"]})", "name is not a text"},
      {named(R"("count":1.0)"), "count is not a whole number of 64 bits"},
      {named(R"("count":1e3)"), "count is not a whole number of 64 bits"},
      {named(R"("count":9223372036854775808)"), "count is not a whole number of 64 bits"},
      {named(R"("count":-9223372036854775809)"), "count is not a whole number of 64 bits"},
      {named(R"("count":true)"), "count is not a whole number of 64 bits"},
      {named(R"("count":"1")"), "count is not a whole number of 64 bits"},
      {named(R"("tags":"a")"), "tags is not a list"},
      {named(R"("tags":{})"), "tags is not a list"},
      {named(R"("tags":["a",null])"), "tags[1] is not a text"},
      {named(R"("tags":["a",["b"]])"), "tags[1] is not a text"},
      {named(R"("item":[])"), "item is not an object"},
      {named(R"("item":{})"), "item.id is missing"},
      {named(R"("item":{"id":"x","on":0})"), "item.on is not true or false"},
      {named(R"("item":{"id":"x","on":"true"})"), "item.on is not true or false"},
      {named(R"("items":[{"id":"x"},{"id":"y"},{"id":{"id":1}}])"), "items[2].id is not a text"},
      {named(R"("items":[{"id":"x"},null])"), "items[1] is not an object"},
      {named(R"("items":[[{"id":"x"}]])"), "items[0] is not an object"},
      {"{\n \"name\": x}", "the document is not JSON (line 2, column 10)"},
      {"{'name':'a'}", "the document is not JSON (line 1, column 2)"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(decode(row.bytes), (std::expected<Shape, std::string>(std::unexpect, row.error))) << row.bytes;
  }
}

TEST(JsonDecoder, RefusesWhatIsNotJsonAlsoInSkippedParts) {
  const std::string rows[] = {
      "",
      " ",
      R"({"name":"a"}x)",
      R"({"name":"a"} {})",
      R"({"name":"a",})",
      R"({"name":"a" "count":1})",
      R"({"name":"a","x":01})",
      R"({"name":"a","x":NaN})",
      R"({"name":"a","x":[1,]})",
      R"({"name":"a","x":"\x"})",
      R"({"name":"a","x":"\ud83d"})",
      "{\"name\":\"a\tb\"}",
      "{\"name\":\"a\xFF\"}",
      "{\"name\":\"a\",\"x\":\"\xC0\x80\"}",
      "{\"name\":\"a\",\"\xED\xA0\x80\":1}",
      std::string("{\"name\":\"a\"}\0", 13),
      std::string("{\"name\":\"a\"}\0,", 14),
      std::string("\0{\"name\":\"a\"}", 13),
      "{\"name\":\"a\"/**/}",
  };
  for (const auto& bytes : rows) EXPECT_FALSE(decode(bytes)) << testing::PrintToString(bytes);
}

TEST(JsonDecoder, TakesTheLastOfARepeatedKey) {
  const Item x{"x", {}};
  const Shape plain{"a", {}, {}, x, {}};
  struct Row {
    const char* rest;
    std::optional<Shape> shape;
  };
  const Row rows[] = {
      {R"("name":"b","name":"a","item":{"id":"x"})", plain},
      {R"("name":7,"name":"a","item":{"id":"x"})", plain},
      {R"("item":{"id":"y","on":true},"item":{"id":"x"})", plain},
      {R"("item":{},"item":{"id":"x"})", plain},
      {R"("item":[{"id":7}],"item":{"id":"x"})", plain},
      {R"("item":{"id":7,"id":[],"id":"x"})", plain},
      {R"("item":{"on":1},"count":1,"item":{"id":"x"},"count":null)", plain},
      {R"("items":[{"id":"y"},{}],"items":null,"item":{"id":"x"})", plain},
      {R"("tags":["a",1],"tags":["b"])", Shape{"a", {}, {{"b"}}, {}, {}}},
      {R"("items":[{"id":"y"}],"items":[{"id":1,"id":"x"}])", Shape{"a", {}, {}, {}, {{x}}}},
      {R"("name":"a","name":null)", std::nullopt},
      {R"("item":{"id":"x"},"item":{})", std::nullopt},
      {R"("item":{},"item":{"id":"x"},"item":{})", std::nullopt},
      {R"("tags":["b"],"tags":[1])", std::nullopt},
      {R"("items":[{"id":1},{"id":"x"}])", std::nullopt},
      {R"("item":{},"items":[{}],"item":{"id":"x"})", std::nullopt},
      {R"("count":1.5,"count":1,"tags":1)", std::nullopt},
  };
  for (const auto& row : rows) {
    const auto shape = decode(named(row.rest));
    EXPECT_EQ(shape ? std::optional(*shape) : std::nullopt, row.shape) << row.rest;
  }
}

std::string repeated(std::string_view text, std::size_t times) {
  std::string all;
  for (std::size_t i = 0; i < times; ++i) all += text;
  return all;
}

TEST(JsonDecoder, SurvivesDeepNesting) {
  constexpr std::size_t depth = 100'000;
  const auto lists = repeated("[", depth) + repeated("]", depth);
  const auto objects = repeated(R"({"name":)", depth) + "7" + repeated("}", depth);
  for (const auto& nested : {lists, objects}) {
    EXPECT_TRUE(decode(named("\"x\":" + nested)));
    EXPECT_EQ(decode(named("\"item\":{\"id\":" + nested + "}")).error(), "item.id is not a text");
  }
  EXPECT_FALSE(decode(named("\"x\":" + repeated("[", depth))));
  EXPECT_EQ(decode(lists).error(), "the document is not an object");
}

TEST(JsonDecoder, NamesTheFirstOfManyFaults) {
  const auto broken = named("\"items\":[{\"id\":\"x\"}" + repeated(",{}", 1'000) + "],\"count\":\"1\"");
  EXPECT_EQ(decode(broken).error(), "items[1].id is missing");
}

}  // namespace
}  // namespace ostrel
