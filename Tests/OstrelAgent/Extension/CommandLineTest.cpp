#include "OstrelAgent/Extension/CommandLine.hpp"

#include <gtest/gtest.h>

#include <vector>

namespace ostrel {
namespace {

TEST(CommandLine, TheFirstArgumentIsTheCommandAndTheFlagMayBeAnywhere) {
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
  EXPECT_EQ(roleOf("relaunch"), Role::relaunch);
  for (const auto* word : {"", "Repair", "menubar ", "activat"})
    EXPECT_EQ(roleOf(word), std::nullopt) << word;
}

TEST(CommandLine, TheDefaultCommandAsksOnlyTheQuestionsItNeeds) {
  struct Row {
    bool isTrustPending;
    bool isEnrolled;
    bool hasMenuBarAgent;
    const char* command;
    std::vector<std::string> asked;
  };
  const Row rows[] = {
      {true, true, true, "onboarding", {"trust"}},
      {false, false, true, "onboarding", {"trust", "enrolled"}},
      {false, true, true, "relaunch", {"trust", "enrolled", "agent"}},
      {false, true, false, "activate", {"trust", "enrolled", "agent"}},
  };
  for (const auto& row : rows) {
    std::vector<std::string> asked;
    const auto question = [&asked](const char* name, bool answer) {
      return [&asked, name, answer] {
        asked.emplace_back(name);
        return answer;
      };
    };
    EXPECT_EQ(defaultCommand({.isTrustPending = question("trust", row.isTrustPending),
                              .isEnrolled = question("enrolled", row.isEnrolled),
                              .hasMenuBarAgent = question("agent", row.hasMenuBarAgent)}),
              row.command);
    EXPECT_EQ(asked, row.asked);
  }
}

}  // namespace
}  // namespace ostrel
