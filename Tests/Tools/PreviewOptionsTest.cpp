#include "Tools/PreviewOptions.hpp"

#include <gtest/gtest.h>

#include <vector>

namespace ostrel {
namespace {

TEST(PreviewOptions, TakesModeLanguageAndOneFileInAnyOrderAndNothingElse) {
  const auto parsed = [](const std::vector<const char*>& arguments) {
    const auto options = PreviewOptions::parse(arguments);
    if (!options) return std::string("refused");
    return std::to_string(static_cast<int>(options->mode)) + options->language + ":" +
           options->file.value_or("standard input");
  };
  EXPECT_EQ(parsed({}), "0:standard input");
  EXPECT_EQ(parsed({"a.json", "--json"}), "1:a.json");
  EXPECT_EQ(parsed({"--json", "--language", "de", "-"}), "1de:standard input");
  EXPECT_EQ(parsed({"--json", "--text", "--export-strings"}), "2:standard input");
  const std::vector<const char*> refused[] = {{"--JSON"}, {"--"}, {"--language"}, {"a", "b"}, {"a", "-"}};
  for (const auto& arguments : refused) {
    EXPECT_EQ(parsed(arguments), "refused") << testing::PrintToString(arguments);
  }
}

}  // namespace
}  // namespace ostrel
