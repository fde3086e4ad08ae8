#include <QGuiApplication>
#include <QImage>

#include <algorithm>

#include "Tests/Views/PanelTest.hpp"

namespace ostrel {
namespace {

class StatusPanel : public PanelTest {
 protected:
  static constexpr auto rollup = "Health, all components OK";
  static constexpr auto more = "Send to admin, Container trust…, Quit status icon";

  /// Presses the tab key until that has the keyboard.
  void tabTo(const std::string& name) {
    for (int i = 0; i < 40 && focused() != name; ++i) press(Qt::Key_Tab);
    ASSERT_EQ(focused(), name);
  }

  int height() const { return window().height(); }
};

PanelContent withChecking(PanelContent content) {
  content.headerButtons[0] = {"Checking…", PanelAction::checkNow, {}, false};
  return content;
}

std::string titleOf(const PanelButton& button) { return button.title; }

TEST_F(StatusPanel, PressesEveryButtonByKeyboardFromTopToBottom) {
  const auto content = unprotectedContent();
  open(content);
  ASSERT_GT(content.cards.size(), 1U);
  ASSERT_TRUE(content.update && content.update->button);
  std::vector<std::string> met;
  press(Qt::Key_Tab);
  for (const auto first = focused(); met.empty() || focused() != first; press(Qt::Key_Tab)) {
    met.push_back(focused());
    press(met.size() % 2 ? Qt::Key_Space : Qt::Key_Return);
    ASSERT_LT(met.size(), 40U);
  }
  std::vector<std::string> titles;
  std::ranges::transform(content.buttons(), std::back_inserter(titles), titleOf);
  std::vector<std::string> pressedTitles;
  std::ranges::transform(pressed, std::back_inserter(pressedTitles), titleOf);
  EXPECT_EQ(pressedTitles, titles);
  EXPECT_EQ(pressed, content.buttons());
  EXPECT_EQ(met.size(), titles.size() + 2) << "the roll-up and what unfolds the other buttons are met, too";
}

TEST_F(StatusPanel, PressesTheButtonThatIsClickedOrSpoken) {
  open(unprotectedContent());
  click("Install…");
  pressBySpeech("Check now");
  ASSERT_EQ(pressed.size(), 2U);
  EXPECT_EQ(pressed[0].action, PanelAction::installUpdate);
  EXPECT_EQ(pressed[1].action, PanelAction::checkNow);
  pressBySpeech(more);
  EXPECT_TRUE(isSpoken("Quit status icon"));
}

TEST_F(StatusPanel, ClosesOnEscapeWithoutAWord) {
  open(protectedContent());
  tabTo("Check now");
  press(Qt::Key_Escape);
  EXPECT_FALSE(panel->isShown());
  EXPECT_EQ(losses, 0);
}

TEST_F(StatusPanel, ClosesAndTellsWhenThePersonGoesElsewhere) {
  open(protectedContent());
  QWindow other;
  other.show();
  other.requestActivate();
  ASSERT_TRUE(becomes([&] { return !panel->isShown(); }));
  EXPECT_EQ(losses, 1);
}

TEST_F(StatusPanel, KeepsFocusAndFoldingOverAnUpdate) {
  auto content = protectedContent();
  open(content);
  tabTo(rollup);
  press(Qt::Key_Space);
  ASSERT_TRUE(isSpoken("Device CA, trusted"));
  content.facts[1].value = "6 min ago";
  content.protection->ecosystems.insert(content.protection->ecosystems.begin(), {"cargo", RowState::ok("")});
  panel->update(content);
  EXPECT_EQ(focused(), rollup);
  EXPECT_TRUE(isSpoken("Device CA, trusted"));
  EXPECT_TRUE(isSpoken("Last check-in, 6 min ago"));
  EXPECT_LT(place("cargo").left(), place("npm").left());
}

TEST_F(StatusPanel, GivesTheFocusBackToAButtonThatWaited) {
  const auto content = protectedContent();
  open(content);
  tabTo("Check now");
  panel->update(withChecking(content));
  press(Qt::Key_Space);
  click("Checking…");
  EXPECT_TRUE(pressed.empty());
  panel->update(content);
  EXPECT_EQ(focused(), "Check now");
  press(Qt::Key_Space);
  EXPECT_EQ(pressed.size(), 1U);
}

TEST_F(StatusPanel, UnfoldsComponentsThatNeedAttentionUntilThePersonFoldsThem) {
  auto content = protectedContent();
  open(content);
  EXPECT_FALSE(isSpoken("Capture, active"));
  const auto folded = height();
  content.health->unfolds = true;
  panel->update(content);
  EXPECT_TRUE(isSpoken("Capture, active"));
  EXPECT_EQ(height(), folded + 5 * 33);
  click(rollup);
  EXPECT_FALSE(isSpoken("Capture, active"));
  EXPECT_EQ(height(), folded);
  content.facts[1].value = "6 min ago";
  panel->update(content);
  EXPECT_FALSE(isSpoken("Capture, active"));
  panel->close();
  open(content);
  EXPECT_TRUE(isSpoken("Capture, active"));
}

TEST_F(StatusPanel, DrawsNothingWhileNothingChanges) {
  auto content = unprotectedContent();
  open(content);
  panel->update(content);
  panel->setLook(look);
  EXPECT_EQ(frames(), 0);
  content.facts[1].value = "6 min ago";
  panel->update(content);
  EXPECT_EQ(frames(), 1);
  panel->close();
  content.facts[1].value = "7 min ago";
  panel->update(content);
  EXPECT_EQ(frames(), 0);
  EXPECT_FALSE(panel->isShown());
}

TEST_F(StatusPanel, ScrollsWhatIsTallerThanItsRoomAndFollowsTheFocus) {
  auto content = unprotectedContent();
  content.maxHeight = 300;
  open(content);
  EXPECT_EQ(height(), 300);
  const auto isInside = [&](const std::string& name) {
    return place(name).top() >= place("Check now").bottom() &&
           place(name).bottom() <= place("Copy diagnostics").top();
  };
  tabTo("Install…");
  EXPECT_TRUE(isInside("Install…"));
  press(Qt::Key_Tab);
  EXPECT_TRUE(isInside(focused())) << focused();
  const auto before = place("Install…").top();
  press(Qt::Key_PageUp);
  press(Qt::Key_PageUp);
  press(Qt::Key_PageUp);
  EXPECT_GT(place("Install…").top(), before);
  press(Qt::Key_Down);
  const auto scrolled = place("Install…").top();
  content.facts[1].value = "6 min ago";
  panel->update(content);
  EXPECT_EQ(place("Install…").top(), scrolled);
}

TEST_F(StatusPanel, KeepsItsHeaderAndFooterWithoutRoom) {
  auto content = protectedContent();
  content.maxHeight = 0;
  open(content);
  EXPECT_LT(height(), 140);
  EXPECT_LE(place("Check now").bottom(), place("Copy diagnostics").top());
  EXPECT_LE(place("Copy diagnostics").bottom(), height());
}

TEST_F(StatusPanel, StaysAtItsCornerOfTheScreenWhileItGrows) {
  anchor.click = {600, 790};
  open(protectedContent());
  const auto bottom = window().geometry().bottom();
  const auto top = window().geometry().top();
  click(rollup);
  EXPECT_EQ(window().geometry().bottom(), bottom);
  EXPECT_LT(window().geometry().top(), top);
  EXPECT_EQ(window().width(), 360);
}

TEST_F(StatusPanel, ShowsNoticesInPlaceOfTheFooter) {
  auto content = protectedContent();
  open(content);
  tabTo("Copy diagnostics");
  content.notices = {"Copied", "Couldn't send: x"};
  panel->update(content);
  EXPECT_TRUE(isSpoken("Copied") && isSpoken("Couldn't send: x"));
  EXPECT_FALSE(isSpoken("Copy diagnostics"));
  press(Qt::Key_Space);
  EXPECT_TRUE(pressed.empty());
  content.notices.clear();
  panel->update(content);
  EXPECT_EQ(focused(), "Copy diagnostics");
}

TEST_F(StatusPanel, TellsWhyThereAreNoRows) {
  auto content = protectedContent();
  content.protection.reset();
  content.health.reset();
  content.statusError = RowState::warn("agent status unavailable (exit 3)");
  open(protectedContent());
  panel->update(content);
  EXPECT_TRUE(isSpoken("agent status unavailable (exit 3)"));
  EXPECT_FALSE(isSpoken(rollup));
  EXPECT_FALSE(isSpoken("npm"));
  EXPECT_LT(place("agent status unavailable (exit 3)").bottom(), place("Identity, ost_…9f").top());
}

TEST_F(StatusPanel, SpeaksVerdictRowsAndButtons) {
  auto content = unprotectedContent();
  content.headerButtons = withChecking(content).headerButtons;
  open(content);
  std::vector<std::string> texts;
  for (const auto& item : spoken()) {
    texts.push_back(item.role + " " + item.name + (item.isChecked ? " +" : ""));
  }
  for (const auto* text :
       {"heading Not protected", "button Checking…", "group Update required, 3.0", "button Install…",
        "text npm, off by policy", "text go", "text Version, 2.4.0", "button Open Ostrel Agent",
        "button Send to admin, Container trust…, Quit status icon"}) {
    EXPECT_EQ(std::ranges::count(texts, text), 1) << text << "\nin\n" << testing::PrintToString(texts);
  }
  for (const auto& row : content.health->components) {
    EXPECT_EQ(std::ranges::count(texts, "text " + row.label + ", " + row.state.text), 1) << row.label;
  }
  const auto& health = content.health->rollup;
  EXPECT_EQ(std::ranges::count(texts, "button " + health.label + ", " + health.state.text + " +"), 1);
}

}  // namespace
}  // namespace ostrel
