#include "Shells/Console/PanelText.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

namespace ostrel {
namespace {

const std::string sentence =
    "The network filter is off, so installs are going direct and are not being inspected. Turn it back on "
    "above.";

PanelButton button(std::string title) { return {.title = std::move(title), .action = PanelAction::checkNow}; }

/// A panel with something in every place, each text too long for one line.
PanelContent fullContent() {
  PanelContent content;
  content.header = {
      .word = "Not protected", .deadlineLine = sentence, .symbol = "", .tint = RowState::Case::bad};
  content.headerButtons = {button("Check now")};
  content.update = {.state = RowState::bad(sentence),
                    .version = "4.13.0",
                    .belowMinimum = "below minimum 4.6.0",
                    .button = button("Install…"),
                    .installing = "",
                    .protectionStaysOn = ""};
  content.cards = {{.id = "guard",
                    .state = RowState::bad("not protecting"),
                    .title = "Guard",
                    .detail = sentence,
                    .action = sentence,
                    .button = button("Turn on network filter")}};
  content.protection = PanelContent::Protection();
  content.protection->guard = {"guard", "Guard", RowState::bad(sentence), ""};
  for (int i = 0; i < 30; ++i) content.protection->ecosystems.push_back({"ecosystem", RowState::ok("")});
  content.protection->offNote = sentence;
  content.health = PanelContent::Health();
  content.health->components = {{"c", "Laufzeitvertrauen", RowState::off(sentence), ""}};
  content.facts = {{"Identity", sentence}, {"Version", "4.12.0"}};
  for (int i = 0; i < 7; ++i) content.moreButtons.push_back(button("Container trust…"));
  content.notices = {sentence};
  return content;
}

TEST(PanelText, KeepsWithinTheWidthOfATerminalAndNumbersItsButtonsAsTheyAreCounted) {
  const auto content = fullContent();
  std::istringstream lines(panelText(content, ButtonMarks::numbered));
  std::size_t nextNumber = 1;
  for (std::string line; std::getline(lines, line);) {
    const auto columns = std::ranges::count_if(line, [](char c) { return (c & 0xC0) != 0x80; });
    EXPECT_LE(columns, 80) << line;
    EXPECT_FALSE(line.ends_with(' ')) << line;
    while (line.find("[" + std::to_string(nextNumber) + "] ") != std::string::npos) {
      const auto title = content.buttons()[nextNumber - 1].title;
      EXPECT_NE(line.find("[" + std::to_string(nextNumber) + "] " + title), std::string::npos) << line;
      ++nextNumber;
    }
  }
  EXPECT_EQ(nextNumber, content.buttons().size() + 1);
}

TEST(PanelText, NoticesAreBetweenTheFactsAndTheButtons) {
  PanelContent content;
  content.facts = {{"Version", "4.12.0"}};
  content.notices = {"Checked in", "Sent"};
  content.footerButtons = {button("Quit")};
  EXPECT_TRUE(panelText(content, ButtonMarks::plain)
                  .ends_with("  Version  4.12.0\n\n  Checked in\n  Sent\n\n  [Quit]\n"));
}

TEST(PanelText, LetsNoForeignTextSteerTheTerminal) {
  PanelContent content;
  content.header.word = "word\x1b[31m";
  content.cards = {{.id = "c",
                    .state = RowState::warn("a\rb"),
                    .title = "T\x7f",
                    .detail = "one\ntwo \xC2\x9B",
                    .action = "",
                    .button = {}}};
  content.facts = {{"Identity", "x\x07y"}};
  const auto text = panelText(content, ButtonMarks::plain);
  EXPECT_EQ(text.find_first_of("\x1b\r\x7f\x07"), std::string::npos);
  EXPECT_EQ(text.find("\xC2\x9B"), std::string::npos);
  EXPECT_NE(text.find("one two"), std::string::npos);
}

}  // namespace
}  // namespace ostrel
