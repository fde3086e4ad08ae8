#include "Tools/PreviewOptions.hpp"

#include <gtest/gtest.h>

#include <vector>

namespace ostrel {
namespace {

TEST(PreviewOptions, TakesModeLanguageAndOneFileInAnyOrder) {
  using Mode = PreviewOptions::Mode;
  struct Row {
    std::vector<const char*> arguments;
    Mode mode;
    std::string language;
    std::optional<std::string> file;
  };
  const Row rows[] = {
      {{}, Mode::text, "", std::nullopt},
      {{"-"}, Mode::text, "", std::nullopt},
      {{"a.json"}, Mode::text, "", "a.json"},
      {{"a.json", "--json"}, Mode::json, "", "a.json"},
      {{"--json", "--language", "de", "-"}, Mode::json, "de", std::nullopt},
      {{"--language", "--json"}, Mode::text, "--json", std::nullopt},
      {{"--json", "--text", "--export-strings"}, Mode::exportStrings, "", std::nullopt},
      {{"--help"}, Mode::help, "", std::nullopt},
  };
  for (const auto& row : rows) {
    const auto options = PreviewOptions::parse(row.arguments);
    ASSERT_TRUE(options) << testing::PrintToString(row.arguments);
    EXPECT_EQ(options->mode, row.mode) << testing::PrintToString(row.arguments);
    EXPECT_EQ(options->language, row.language);
    EXPECT_EQ(options->file, row.file);
  }
}

TEST(PreviewOptions, RefusesWhatItDoesNotKnow) {
  const std::vector<const char*> rows[] = {{"--JSON"}, {"--"}, {"--language"}, {"a", "b"}, {"a", "-"}};
  for (const auto& arguments : rows) {
    EXPECT_FALSE(PreviewOptions::parse(arguments)) << testing::PrintToString(arguments);
  }
}

}  // namespace
}  // namespace ostrel
