#include "OstrelAgent/Text/StringsTable.hpp"

#include <gtest/gtest.h>

namespace ostrel {
namespace {

using Result = std::expected<StringsEntries, StringsError>;

TEST(StringsTable, ReadsEntriesInTheirOrder) {
  const std::pair<std::string_view, StringsEntries> rows[] = {
      {" \t\r\n", {}},
      {"\xEF\xBB\xBF\"b\"=\"2\";\"a\"=\"1\";\r\n\"b\"=\"3\";", {{"b", "2"}, {"a", "1"}, {"b", "3"}}},
      {"/* \" * / ** */ \"k\" /**/ = // = ;\n \"/* v */\" ; // end", {{"k", "/* v */"}}},
      {R"("k" = "\"\\\'\n\t\r\U00e4\u20AC\U2026x";)", {{"k", "\"\\'\n\t\rä€…x"}}},
      {"\"\" = \"two\nlines — 🛡\";", {{"", "two\nlines — 🛡"}}},
  };
  for (const auto& [bytes, entries] : rows) EXPECT_EQ(parseStrings(bytes), Result(entries)) << bytes;
}

TEST(StringsTable, RefusesADamagedTableWithLineAndReason) {
  const std::pair<std::string, StringsError> rows[] = {
      {"\nkey = \"v\";", {3, "'\"' is missing"}},
      {"\n\n\"k\" \"v\";", {4, "'=' is missing after a key"}},
      {"\"k\" =", {2, "'\"' is missing"}},
      {"\"k\" = \"v\"", {2, "';' is missing after a text"}},
      {"\"k\" = \"v\\\"", {2, "a text does not end"}},
      {"\n/* \"k\" = \"v\";\n", {3, "a comment does not end"}},
      {"\"k\" = /*/ \"v\";", {2, "a comment does not end"}},
      {"\"k\" = \"\\x\";", {2, "an escape is unknown"}},
      {"\"k\" = \"\\", {2, "an escape is unknown"}},
      {"\"k\" = \"\\U12G4\";", {2, "a \\U escape needs four hexadecimal digits"}},
      {"\"k\" = \"\\U12", {2, "a \\U escape needs four hexadecimal digits"}},
      {"\"k\" = \"\\UD83D\\UDEE1\";", {2, "a \\U escape is half a character"}},
      {"/* \xFF */", {1, "the table is not UTF-8"}},
  };
  for (const auto& [bytes, error] : rows) {
    EXPECT_EQ(parseStrings("\"a\" = \"1\";\n" + bytes), Result(std::unexpect, error)) << bytes;
  }
}

TEST(StringsTable, WritesLinesThatReadBackTheSame) {
  const StringsEntries entries = {{"a \"quoted\" key", "back\\slash"}, {"b", "line\nbreak \"\\n\" ä\t\r"}};
  const auto first = stringsLine(entries[0].first, entries[0].second);
  EXPECT_EQ(parseStrings(first + stringsLine(entries[1].first, entries[1].second)), Result(entries));
}

}  // namespace
}  // namespace ostrel
