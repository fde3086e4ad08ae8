#include <gtest/gtest.h>

#include <utility>

#include "Shells/Console/ConsoleScreens.hpp"
#include "Shells/Console/ConsoleStatusItem.hpp"
#include "Tests/Fakes/FakeScreens.hpp"
#include "Tests/Fakes/FakeStandardStreams.hpp"
#include "Tests/Fakes/FakeStatusItem.hpp"
#include "Tests/Fakes/ShellContract.hpp"

namespace ostrel {
namespace {

PanelContent contentWith(std::string word) {
  PanelContent content;
  content.header.word = std::move(word);
  content.headerButtons = {{.title = "Checking…", .action = PanelAction::checkNow, .isEnabled = false}};
  content.moreButtons = {{.title = "Quit", .action = PanelAction::quitStatusIcon}};
  return content;
}

struct ConsoleHost {
  FakeStandardStreams streams;
  ConsoleScreens screens{streams};
  ConsoleStatusItem statusItem{streams};
};

TEST(ConsoleScreens, KeepTheContractAsTheFakesDo) {
  ConsoleHost host;
  FakeScreens screens;
  FakeStatusItem statusItem;
  expectShownFromOpeningToClosing(host.screens);
  expectShownFromOpeningToClosing(screens);
  expectEveryClickIsReported(host.statusItem, [&] { host.statusItem.click(); });
  expectEveryClickIsReported(statusItem, [&] { statusItem.click(); });
}

TEST(ConsoleScreens, PrintsThePanelWhenItOpensAndOnlyWhenItChanges) {
  ConsoleHost host;
  const auto printed = [&] { return std::exchange(host.streams.output, {}); };
  host.screens.openPanel(contentWith("Protected"));
  EXPECT_NE(printed().find("Protected"), std::string::npos);
  host.screens.updatePanel(contentWith("Protected"));
  EXPECT_EQ(printed(), "");
  host.screens.updatePanel(contentWith("Settling"));
  EXPECT_NE(printed().find("Settling"), std::string::npos);
}

TEST(ConsoleScreens, PressesTheButtonOfThatNumberWhenItCanBePressed) {
  using enum ConsolePress;
  ConsoleHost host;
  std::vector<PanelButton> pressed;
  host.screens.onPanelButton([&](const PanelButton& button) { pressed.push_back(button); });
  EXPECT_EQ(host.screens.press(1), nothingOpen);
  host.screens.openPanel(contentWith("Protected"));
  EXPECT_EQ(host.screens.press(0), noSuchButton);
  EXPECT_EQ(host.screens.press(1), disabled);
  EXPECT_EQ(host.screens.press(2), done);
  EXPECT_EQ(host.screens.press(3), noSuchButton);
  EXPECT_EQ(pressed, contentWith("").moreButtons);
}

}  // namespace
}  // namespace ostrel
