#include "OstrelAgent/CommandLine.hpp"

#include <gtest/gtest.h>

#include <vector>

namespace ostrel {
namespace {

TEST(CommandLine, TakesTheFirstArgumentAsExactCommandAndOneFlagAnywhere) {
  const std::pair<std::vector<const char*>, CommandLine> rows[] = {
      {{}, {std::nullopt, false}},
      {{"activate", "deactivate"}, {"activate", false}},
      {{"activate", "--extension-only"}, {"activate", true}},
      {{"activate", "x", "--extension-only", "y"}, {"activate", true}},
      {{"--extension-only"}, {"--extension-only", true}},
      {{"activate", "--extension-only=1", "-extension-only", "--Extension-only"}, {"activate", false}},
  };
  for (const auto& [arguments, line] : rows) {
    EXPECT_EQ(CommandLine::parse(arguments), line) << testing::PrintToString(arguments);
  }
  EXPECT_EQ(roleOf("menubar"), Role::menuBar);
  for (const auto* word : {"", "Repair", "menubar ", "activat"})
    EXPECT_EQ(roleOf(word), std::nullopt) << word;
}

}  // namespace
}  // namespace ostrel
