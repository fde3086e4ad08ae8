#include <QGuiApplication>
#include <QImage>

#include <algorithm>
#include <set>

#include "Tests/Shells/Desktop/Views/PanelTest.hpp"

namespace ostrel {
namespace {

class StatusPanel : public PanelTest {
 protected:
  static constexpr auto rollup = "Health, all components OK";
  static constexpr auto more = "General";

  /// Presses the tab key until that has the keyboard.
  void tabTo(const std::string& name) {
    for (int i = 0; i < 40 && focused() != name; ++i) press(Qt::Key_Tab);
    ASSERT_EQ(focused(), name);
  }

  int height() const { return window().height(); }

  bool isInside(const std::string& name, double from, double to) const {
    return place(name).top() >= from && place(name).bottom() <= to;
  }

  /// Beside what has the keyboard; the roll-up's ring is within it.
  bool hasFocusRing() const {
    const auto at = place(focused());
    const double x = focused().starts_with("Health") ? at.left() + 2 : at.left() - 2;
    return colorAt(static_cast<int>(x), static_cast<int>(at.center().y())) == QColor("#0a66d8");
  }
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
    EXPECT_TRUE(hasFocusRing()) << focused();
    press(met.size() % 2 ? Qt::Key_Space : Qt::Key_Return);
    ASSERT_LT(met.size(), 40U);
  }
  std::vector<std::string> titles;
  std::ranges::transform(content.buttons(), std::back_inserter(titles), titleOf);
  std::vector<std::string> pressedTitles;
  std::ranges::transform(pressed, std::back_inserter(pressedTitles), titleOf);
  EXPECT_EQ(pressedTitles, titles);
  EXPECT_EQ(pressed, content.buttons());
  EXPECT_EQ(met.size(), titles.size() + 2)
      << "the roll-up and what startsExpanded the other buttons are met, too";
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

TEST_F(StatusPanel, MayChangeOrCloseDuringAPress) {
  open(unprotectedContent());
  onPress = [&] { panel->update(protectedContent()); };
  click("Install…");
  EXPECT_FALSE(isSpoken("Install…"));
  onPress = [&] { panel->close(); };
  tabTo("Check now");
  press(Qt::Key_Space);
  EXPECT_FALSE(panel->isShown());
  EXPECT_EQ(pressed.size(), 2U);
  EXPECT_EQ(losses, 0);
}

TEST_F(StatusPanel, ResetsFocusScrollingAndFoldingWhenItOpens) {
  auto content = unprotectedContent();
  content.maxHeight = 300;
  open(content);
  const auto top = place("Install…").top();
  tabTo(more);
  press(Qt::Key_Space);
  ASSERT_TRUE(isSpoken("Quit status icon"));
  tabTo("Install…");
  press(Qt::Key_PageDown);
  panel->close();
  open(content);
  EXPECT_EQ(focused(), "");
  EXPECT_EQ(place("Install…").top(), top);
  EXPECT_FALSE(isSpoken("Quit status icon"));
  press(Qt::Key_Tab);
  EXPECT_EQ(focused(), "Check now");
}

TEST_F(StatusPanel, ClosesOnEscapeWithoutReportingALostFocus) {
  open(protectedContent());
  tabTo("Check now");
  press(Qt::Key_Escape);
  EXPECT_FALSE(panel->isShown());
  EXPECT_EQ(losses, 0);
}

TEST_F(StatusPanel, ClosesAndReportsItWhenItLosesTheFocus) {
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
  if (!content.protection) FAIL();
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
  pressBySpeech("Checking…");
  EXPECT_TRUE(pressed.empty());
  panel->update(content);
  EXPECT_EQ(focused(), "Check now");
  press(Qt::Key_Space);
  EXPECT_EQ(pressed.size(), 1U);
}

TEST_F(StatusPanel, UnfoldsComponentsThatNeedAttentionUntilTheUserFoldsThem) {
  auto content = protectedContent();
  open(content);
  EXPECT_FALSE(isSpoken("Capture, active"));
  const auto folded = height();
  if (!content.health) FAIL();
  content.health->startsExpanded = true;
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
  panel->setTheme(theme);
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
  const auto from = place("Check now").bottom();
  const auto to = place("Copy diagnostics").top();
  tabTo("Install…");
  EXPECT_TRUE(isInside("Install…", from, to));
  press(Qt::Key_Tab);
  EXPECT_TRUE(isInside(focused(), from, to)) << focused();
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

TEST_F(StatusPanel, ShowsEveryPartOnALowScreen) {
  auto content = unprotectedContent();
  struct Row {
    double scale;
    int screen;
    int height;
  };
  for (const auto& row : {Row{1, 30, 99}, Row{3, 600, 560}}) {
    theme.textScale = row.scale;
    anchor.available.height = row.screen;
    content.maxHeight = std::max(0, row.screen - 40);
    open(content);
    EXPECT_EQ(height(), row.height);
    press(Qt::Key_Tab);
    for (; focused() != more; press(Qt::Key_Tab)) {
      EXPECT_TRUE(isInside(focused(), 0, height())) << row.scale << focused();
      ASSERT_NE(focused(), "");
    }
    for (int i = 0; i < 40; ++i) press(Qt::Key_PageUp);
    std::set<std::string> unseen;
    for (const auto& item : spoken()) unseen.insert(item.name);
    for (int i = 0; i < 300 && !unseen.empty(); ++i) {
      std::erase_if(unseen,
                    [&](const auto& name) { return place(name).top() >= 0 && place(name).top() < height(); });
      press(Qt::Key_Down);
    }
    EXPECT_EQ(unseen, std::set<std::string>()) << row.scale;
    panel->close();
  }
}

TEST_F(StatusPanel, ScrollsNoFurtherThanTheUserDoes) {
  auto content = unprotectedContent();
  content.maxHeight = 300;
  open(content);
  for (const bool byWheel : {true, false}) {
    const auto before = place("Install…").top();
    byWheel ? turnWheel() : drag();
    const auto after = place("Install…").top();
    EXPECT_LT(after, before - 20) << byWheel;
    frames();
    EXPECT_EQ(place("Install…").top(), after);
  }
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

TEST_F(StatusPanel, NoticesAreAboveTheFooterButtonsAndHideNone) {
  auto content = protectedContent();
  content.footerButtons[0].isEnabled = false;
  const auto isEnabled = [this](const PanelButton& button) {
    return std::ranges::any_of(
        spoken(), [&](const auto& item) { return item.name == button.title && item.isFocusable; });
  };
  std::string sentence;
  for (int i = 0; i < 12; ++i) sentence += "Couldn't send: ";
  for (const auto& notices : std::vector<std::vector<std::string>>{{"Copied"}, {"Copied", sentence}}) {
    content.notices.clear();
    open(content);
    click(more);
    tabTo("Copy diagnostics");
    content.notices = notices;
    panel->update(content);
    const auto last = place(notices.back());
    EXPECT_LE(last.right(), window().width() - 12);
    EXPECT_GT(last.top(), place("Version, 2.4.0").bottom());
    for (const auto* group : {&content.footerButtons, &content.moreButtons}) {
      for (const auto& button : *group) {
        EXPECT_GT(place(button.title).top(), last.bottom()) << button.title;
        EXPECT_LT(place(button.title).bottom(), window().height()) << button.title;
        EXPECT_EQ(isEnabled(button), button.isEnabled) << button.title;
      }
    }
    EXPECT_EQ(focused(), "Copy diagnostics");
    panel->close();
  }
  const auto heightOf = [&](const std::string& notice) { return place(notice).height(); };
  open(content);
  EXPECT_GE(heightOf(sentence), 3 * heightOf("Copied")) << "a long notice wraps";
}

TEST_F(StatusPanel, ShowsWhyThereAreNoRows) {
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
  if (!content.protection || !content.health) FAIL();
  content.protection->containers.note = "Restart it.";
  open(content);
  std::vector<std::string> texts;
  for (const auto& item : spoken()) {
    texts.push_back(item.role + " " + item.name + (item.isChecked ? " +" : "") +
                    (item.isFocusable || item.role != "button" ? "" : " -") +
                    (item.description.empty() ? "" : ": " + item.description));
  }
  const auto& lock = content.cards[1];
  const auto& health = content.health->rollup;
  std::vector<std::string> expected = {
      "heading Not protected",
      "button Checking… -",
      "group Update required, 3.0: below minimum 2.9",
      "button Install…",
      "group Egress lock: " + lock.detail + " " + lock.action,
      "text npm, off by policy",
      "text go",
      "text Containers, none running: Restart it.",
      "button " + health.label + ", " + health.state.text + " +",
      "text Version, 2.4.0",
      "button Open Ostrel Agent",
      "button General: Send to admin, Container trust…, Quit status icon",
  };
  for (const auto& row : content.health->components)
    expected.push_back("text " + row.label + ", " + row.state.text);
  for (const auto& text : expected) {
    EXPECT_EQ(std::ranges::count(texts, text), 1) << text << "\nin\n" << testing::PrintToString(texts);
  }
  pressBySpeech(more);
  EXPECT_TRUE(
      std::ranges::any_of(spoken(), [](const auto& item) { return item.name == more && item.isChecked; }));
}

}  // namespace
}  // namespace ostrel
