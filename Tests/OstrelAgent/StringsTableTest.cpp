#include "OstrelAgent/StringsTable.hpp"

#include <gtest/gtest.h>

#include <algorithm>

namespace ostrel {
namespace {

TEST(StringsTable, ReadsEntriesInTheirOrder) {
  struct Row {
    std::string_view bytes;
    StringsEntries entries;
  };
  const Row rows[] = {
      {"", {}},
      {" \t\r\n", {}},
      {"\xEF\xBB\xBF\"k\" = \"v\";", {{"k", "v"}}},
      {"\"b\"=\"2\";\"a\"=\"1\";\r\n\"b\"=\"3\";", {{"b", "2"}, {"a", "1"}, {"b", "3"}}},
      {"/* \" * / ** */ \"k\" /**/ = // = ;\n \"v\" ; // end", {{"k", "v"}}},
      {"\"/* k */\" = \"// v\";", {{"/* k */", "// v"}}},
      {R"("k" = "\"\\\'\n\t\r";)", {{"k", "\"\\'\n\t\r"}}},
      {R"("k" = "\U00e4\u20AC\U2026x";)", {{"k", "ä€…x"}}},
      {"\"\" = \"two\nlines — 🛡\";", {{"", "two\nlines — 🛡"}}},
  };
  for (const auto& row : rows) {
    const auto entries = parseStrings(row.bytes);
    ASSERT_TRUE(entries) << row.bytes << ": " << entries.error().reason;
    EXPECT_EQ(*entries, row.entries) << row.bytes;
  }
}

TEST(StringsTable, RefusesADamagedTableWithLineAndReason) {
  struct Row {
    std::string_view bytes;
    StringsError error;
  };
  const std::string good = "\"a\" = \"1\";\n";
  const Row rows[] = {
      {"\nkey = \"v\";", {2, "'\"' is missing"}},
      {"\n\n\"k\" \"v\";", {3, "'=' is missing after a key"}},
      {"\"k\" = v;", {1, "'\"' is missing"}},
      {"\"k\" = \"v\"", {1, "';' is missing after a text"}},
      {"\"k\"", {1, "'=' is missing after a key"}},
      {"\"k\" =", {1, "'\"' is missing"}},
      {"\"k\" = \"v", {1, "a text does not end"}},
      {"\"k\" = \"v\\\"", {1, "a text does not end"}},
      {"\n/* \"k\" = \"v\";\n", {2, "a comment does not end"}},
      {"\"k\" = /*/ \"v\";", {1, "a comment does not end"}},
      {"\"k\" = \"\\x\";", {1, "an escape is unknown"}},
      {"\"k\" = \"\\", {1, "an escape is unknown"}},
      {"\"k\" = \"\\U12G4\";", {1, "a \\U escape needs four hexadecimal digits"}},
      {"\"k\" = \"\\U12", {1, "a \\U escape needs four hexadecimal digits"}},
      {"\"k\" = \"\\UD83D\\UDEE1\";", {1, "a \\U escape is half a character"}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.bytes);
    const auto entries = parseStrings(good + std::string(row.bytes));
    ASSERT_FALSE(entries);
    EXPECT_EQ(entries.error(), (StringsError{row.error.line + 1, row.error.reason}));
  }
}

TEST(StringsTable, RefusesBytesThatAreNotUtf8Anywhere) {
  for (const std::string_view bytes : {"\"k\" = \"\xC3\";", "/* \xFF */", "\xFF\xFE\"\0k"}) {
    const auto entries = parseStrings(bytes);
    ASSERT_FALSE(entries);
    EXPECT_EQ(entries.error().reason, "the table is not UTF-8");
  }
}

TEST(StringsTable, WritesLinesThatReadBackTheSame) {
  const StringsEntries entries = {{"a \"quoted\" key", "back\\slash"}, {"b", "line\nbreak \"\\n\" ä\t\r"}};
  std::string table;
  for (const auto& [key, value] : entries) table += stringsLine(key, value);
  EXPECT_EQ(std::count(table.begin(), table.end(), '\n'), 2);
  EXPECT_EQ(parseStrings(table), (std::expected<StringsEntries, StringsError>(entries)));
}

}  // namespace
}  // namespace ostrel
