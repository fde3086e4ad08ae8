#include "OstrelAgent/Text/Json.hpp"

#include <gtest/gtest.h>

#include <limits>

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

void read(const JsonReader& reader, Item& item) {
  reader.required("id", item.id);
  reader.optional("on", item.on);
}

void read(const JsonReader& reader, Shape& shape) {
  reader.required("name", shape.name);
  reader.optional("count", shape.count);
  reader.optional("tags", shape.tags);
  reader.optional("item", shape.item);
  reader.optional("items", shape.items);
}

/// The document as a shape, or why it is refused.
std::expected<Shape, std::string> decode(std::string_view bytes) {
  const auto document = JsonObject::parse(bytes);
  if (!document) return std::unexpected(document.error().description());
  auto shape = document->as<Shape>();
  if (!shape) return std::unexpected(shape.error().description());
  return *shape;
}

/// Why the document is refused; empty when it is not.
std::string errorOf(std::string_view bytes) {
  const auto shape = decode(bytes);
  return shape ? "" : shape.error();
}

/// A document with a name and these members.
std::string named(std::string_view rest) { return R"({"name":"a",)" + std::string(rest) + "}"; }

TEST(Json, AStructHoldsTheMembersAndTheLastOfARepeatedKey) {
  const Item x{"x", {}};
  const std::pair<const char*, Shape> rows[] = {
      {R"("name":"\u00e4\ud83d\udee1\n\"")", {"ä🛡\n\"", {}, {}, {}, {}}},
      {R"("count":null,"tags":null,"item":null,"items":null)", {"a", {}, {}, {}, {}}},
      {R"("tags":[],"items":[],"count":-0)", {"a", 0, {{}}, {}, {{}}}},
      {R"("items":[{"id":"x"},{"on":true,"id":"y"}],"item":{"id":"z","on":null},"tags":["t",""])",
       {"a", {}, {{"t", ""}}, Item{"z", {}}, {{x, {"y", true}}}}},
      {R"("Count":"x","":0,"naïve":[{"name":7}],"item":{"name":[],"count":{},"id":"x"})",
       {"a", {}, {}, x, {}}},
      {R"("x":[-1E+99,18446744073709551616])", {"a", {}, {}, {}, {}}},
      {R"("name":7,"name":"b")", {"b", {}, {}, {}, {}}},
      {R"("item":{"id":"y","on":true},"item":{"id":"x"})", {"a", {}, {}, x, {}}},
      {R"("item":{"on":1},"count":1.5,"item":{"id":"x"},"count":null)", {"a", {}, {}, x, {}}},
      {R"("items":[{"id":"y"},{}],"items":[{"id":1,"id":"x"}])", {"a", {}, {}, {}, {{x}}}},
  };
  for (const auto& [rest, shape] : rows)
    EXPECT_EQ(decode(named(rest)), shape) << rest << errorOf(named(rest));
}

TEST(Json, AFaultNamesItsPlaceAndReason) {
  const std::pair<const char*, const char*> rows[] = {
      {R"("name":null)", "name is not a text"},
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
      {R"("x":1e400)", "the document has a number that is too large"},
  };
  for (const auto& [rest, error] : rows) EXPECT_EQ(errorOf(named(rest)), error) << rest;
  EXPECT_EQ(errorOf("{}"), "name is missing");
  for (const auto* root : {"[]", "[{\"name\":\"a\"}]", "null", "true", "1", "0.5", "\"name\""}) {
    EXPECT_EQ(errorOf(root), "the document is not an object") << root;
  }
}

TEST(Json, AMemberIsGivenAsItsOwnTypeOnly) {
  const auto object = JsonObject::parse(
      "\xEF\xBB\xBF \n{\"yes\":true,\"word\":\"true\",\"n\\u00e4me\\\"\":1,"
      "\"none\":null,\"\":\"unnamed\",\"again\":1,\"again\":\"last\","
      "\"item\":{\"id\":\"x\"},\"bad\":{\"on\":true}}\r\n ");
  ASSERT_TRUE(object) << object.error().description();
  EXPECT_EQ(object->boolean("yes"), true);
  EXPECT_EQ(object->text("word"), "true");
  EXPECT_EQ(object->integer("näme\""), 1);
  EXPECT_EQ(object->text(""), "unnamed");
  EXPECT_EQ(object->text("again"), "last");
  EXPECT_EQ(object->member<Item>("item"), (Item{"x", {}}));
  for (const auto* name : {"word", "none", "item", "missing", "id"}) {
    EXPECT_EQ(object->boolean(name), std::nullopt) << name;
    EXPECT_EQ(object->integer(name), std::nullopt) << name;
  }
  for (const auto* name : {"yes", "none", "item"}) EXPECT_EQ(object->text(name), std::nullopt) << name;
  for (const auto* name : {"yes", "none", "bad"}) EXPECT_EQ(object->member<Item>(name), std::nullopt) << name;
}

TEST(Json, AnIntegerHasNoFractionAndFits64Bits) {
  using Limits = std::numeric_limits<std::int64_t>;
  const std::pair<const char*, std::optional<std::int64_t>> rows[] = {
      {"-61", -61},
      {"9223372036854775807", Limits::max()},
      {"-9223372036854775808", Limits::min()},
      {"9223372036854775808", std::nullopt},
      {"-9223372036854775809", std::nullopt},
      {"18446744073709551615", std::nullopt},
      {"18446744073709551616", std::nullopt},
      {"61.0", std::nullopt},
      {"61e0", std::nullopt},
      {"\"61\"", std::nullopt},
      {"true", std::nullopt},
      {"[61]", std::nullopt},
  };
  for (const auto& [number, integer] : rows) {
    const auto object = JsonObject::parse(R"({"n":)" + std::string(number) + "}");
    ASSERT_TRUE(object) << number;
    EXPECT_EQ(object->integer("n"), integer) << number;
  }
}

TEST(Json, AMalformedDocumentIsRefused) {
  EXPECT_EQ(errorOf(" {\"name\" : \"a\"}\r\n"), "");
  using namespace std::string_view_literals;
  for (const auto bytes : {""sv, " \n"sv, "\xEF\xBB\xBF"sv, "{\"name\":\"a\"}x"sv, "{\"name\":\"a\"} {}"sv,
                           "{\"name\":\"a\tb\"}"sv, "{\"name\":\"a\xFF\"}"sv, "{\"name\":\"a\"/**/}"sv,
                           "{\"name\":\"a\"}\0"sv, "{\"name\":\"a\"}\0,"sv, "{\"name\":\"a\0\"}"sv,
                           "{\"name\":\"a\","sv, "{\"name\":\"a"sv, "{name:\"a\"}"sv}) {
    EXPECT_NE(errorOf(bytes), "") << bytes;
  }
  for (const auto* rest : {"", "\"x\":01", "\"x\":NaN", "\"x\":[1,]", "\"x\":[}]", "\"x\":1 \"y\":2",
                           R"("x":"\x")", R"("x":"\ud83d")", "\"x\":\"\xC0\x80\"", "\"\xED\xA0\x80\":1"}) {
    EXPECT_NE(errorOf(named(rest)), "") << rest;
  }
}

std::string repeated(std::string_view text, std::size_t times) {
  std::string all;
  for (std::size_t i = 0; i < times; ++i) all += text;
  return all;
}

TEST(Json, DeepNestingAndManyFaultsDoNotOverflowTheStack) {
  constexpr std::size_t depth = 50'000;
  const auto lists = repeated("[", depth) + repeated("]", depth);
  const auto objects = repeated(R"({"name":)", depth) + "7" + repeated("}", depth);
  for (const auto& nested : {lists, objects}) {
    EXPECT_EQ(errorOf(named("\"x\":" + nested)), "");
    EXPECT_EQ(errorOf(named("\"x\":" + nested + ",\"x\":7")), "");
    EXPECT_EQ(errorOf(named("\"item\":{\"id\":" + nested + "}")), "item.id is not a text");
  }
  EXPECT_EQ(errorOf(lists), "the document is not an object");
  EXPECT_EQ(errorOf(repeated("[", depth)), "the document ends before its JSON does");
  EXPECT_EQ(errorOf(repeated(R"({"name":)", depth)), "the document ends before its JSON does");
  const auto broken = "\"items\":[{\"id\":\"x\"}" + repeated(",{}", depth) + "]";
  EXPECT_EQ(errorOf(named(broken)), "items[1].id is missing");
}

}  // namespace
}  // namespace ostrel
