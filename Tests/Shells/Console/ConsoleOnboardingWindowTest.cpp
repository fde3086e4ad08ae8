#include "Shells/Console/ConsoleOnboardingWindow.hpp"

#include <gtest/gtest.h>

#include <utility>

#include "Tests/Fakes/FakeStandardStreams.hpp"

namespace ostrel {
namespace {

using Pressed = std::vector<std::pair<OnboardingAction, std::string>>;

OnboardingContent checklist() {
  OnboardingContent content;
  content.header.title = "Finish";
  auto& row = content.rows.emplace_back();
  row.title = "Approved";
  row.progress = "tool says \x1B[31mred";
  row.errors = {"denied", "no settings"};
  row.buttons = {{.title = "Again", .action = OnboardingAction::reopenApprovalPrompt, .isEnabled = false},
                 {.title = "Settings", .action = OnboardingAction::openExtensionSettings}};
  content.buttons = {{.title = "Close"}};
  return content;
}

OnboardingContent tokenEntry(bool isEnabled) {
  OnboardingContent content;
  content.tokenField = {isEnabled, ""};
  content.buttons = {{.title = "Enrol", .action = OnboardingAction::enrol, .isEnabled = isEnabled}};
  return content;
}

struct ConsoleOnboardingWindowTest : testing::Test {
  void open(const OnboardingContent& content) {
    window.open(content,
                {.pressed = [this](auto action, const auto& token) { pressed.emplace_back(action, token); },
                 .closed = [this] { ++closings; }});
  }

  FakeStandardStreams streams;
  ConsoleOnboardingWindow window{streams};
  Pressed pressed;
  int closings = 0;
};

TEST_F(ConsoleOnboardingWindowTest, PressesItsButtonsByTheNumbersThatItPrints) {
  EXPECT_EQ(window.press(1), ConsolePress::nothingOpen);
  open(checklist());
  EXPECT_TRUE(streams.output.contains("[1] Again   [2] Settings"));
  EXPECT_TRUE(streams.output.contains("[3] Close"));
  EXPECT_TRUE(streams.output.contains("  denied\n  no settings\n"));
  EXPECT_FALSE(streams.output.contains('\x1B')) << "a child's line does not command the terminal";
  EXPECT_EQ(window.press(0), ConsolePress::noSuchButton);
  EXPECT_EQ(window.press(4), ConsolePress::noSuchButton);
  EXPECT_EQ(window.press(1), ConsolePress::disabled);
  EXPECT_EQ(window.enterToken("zq_enroll_x"), ConsolePress::noSuchButton);
  EXPECT_EQ(window.press(2), ConsolePress::done);
  EXPECT_EQ(pressed, (Pressed{{OnboardingAction::openExtensionSettings, ""}}));
  streams.output.clear();
  window.update(checklist());
  EXPECT_EQ(streams.output, "") << "what has not changed is not printed again";
  window.close();
  window.close();
  EXPECT_EQ(closings, 1);
}

TEST_F(ConsoleOnboardingWindowTest, KeepsTheTypedTokenUntilItIsCleared) {
  open(tokenEntry(true));
  EXPECT_EQ(window.enterToken("zq_enroll_x"), ConsolePress::done);
  EXPECT_EQ(window.press(1), ConsolePress::done);
  window.update(tokenEntry(false));
  EXPECT_EQ(window.enterToken("zq_enroll_y"), ConsolePress::disabled);
  window.update(tokenEntry(true));
  window.clearToken();
  EXPECT_EQ(window.press(1), ConsolePress::done);
  using enum OnboardingAction;
  EXPECT_EQ(pressed, (Pressed{{enrol, "zq_enroll_x"}, {enrol, "zq_enroll_x"}, {enrol, ""}}));
  EXPECT_FALSE(streams.output.contains("zq_enroll_"));
}

}  // namespace
}  // namespace ostrel
