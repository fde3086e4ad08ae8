#include <QImage>
#include <QScreen>

#include <algorithm>
#include <memory>

#include "Shells/Desktop/Views/Alert/AlertWindow.hpp"
#include "Shells/Desktop/Views/Common/Picture.hpp"
#include "Tests/Shells/Desktop/Views/ViewTest.hpp"

namespace ostrel {
namespace {

const Alert question{"Install it?", "It takes a few minutes.", {"Install", "Later", "Cancel"}};

std::string words(int count) {
  std::string text;
  while (count-- > 0) text += "Wörter ";
  return text;
}

struct AlertViews : ViewTest {
  AlertViews() {
    auto made = AlertWindow::make(log, [this](std::size_t button) { answers.push_back(button); });
    if (!made) throw std::runtime_error(made.error());
    view = std::move(*made);
  }

  void open(const Alert& alert) {
    view->open(alert, theme);
    awaitWindow();
  }

  void unfocus() const { window().activeFocusItem()->setFocus(false); }

  QRect screen() const { return window().screen()->availableGeometry(); }

  std::vector<std::size_t> answers;
  std::unique_ptr<AlertView> view;
};

TEST_F(AlertViews, AreAnsweredOnceByKeysMouseAndSpeech) {
  struct Row {
    const char* way;
    std::function<void()> act;
    std::size_t button;
  };
  const Row rows[] = {
      {"Return", [&] { press(Qt::Key_Return); }, 0},
      {"Enter", [&] { press(Qt::Key_Enter); }, 0},
      {"Return without a focus", [&] { unfocus(), press(Qt::Key_Return); }, 0},
      {"Space", [&] { press(Qt::Key_Space); }, 0},
      {"Escape", [&] { press(Qt::Key_Escape); }, 2},
      {"Tab, Space", [&] { press(Qt::Key_Tab), press(Qt::Key_Space); }, 1},
      {"Tab, Tab, Return", [&] { press(Qt::Key_Tab), press(Qt::Key_Tab), press(Qt::Key_Return); }, 2},
      {"backwards", [&] { press(Qt::Key_Backtab), press(Qt::Key_Space); }, 2},
      {"Tab, Escape", [&] { press(Qt::Key_Tab), press(Qt::Key_Escape); }, 2},
      {"click", [&] { click("Later"); }, 1},
      {"speech", [&] { pressBySpeech("Later"); }, 1},
      {"close box", [&] { window().close(); }, 2},
  };
  for (const auto& [way, act, button] : rows) {
    open(question);
    EXPECT_EQ(focused(), "Install") << way;
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, "\r", true);
    QCoreApplication::sendEvent(&window(), &held);
    EXPECT_TRUE(answers.empty()) << way;
    act();
    EXPECT_FALSE(window().isVisible()) << way;
    EXPECT_EQ(std::exchange(answers, {}), std::vector{button}) << way;
  }
}

TEST_F(AlertViews, AreModalDialogsInTheMiddleThatCannotBeResized) {
  open({"Install it?", words(40), {"Install", "Cancel"}});
  EXPECT_EQ(window().modality(), Qt::ApplicationModal);
  EXPECT_EQ(window().type(), Qt::Dialog);
  EXPECT_TRUE(window().flags().testFlags(Qt::WindowStaysOnTopHint | Qt::WindowCloseButtonHint));
  EXPECT_FALSE(window().flags() & (Qt::WindowMinMaxButtonsHint | Qt::FramelessWindowHint));
  EXPECT_LE((window().frameGeometry().center() - screen().center()).manhattanLength(), 40);
  EXPECT_EQ(window().minimumSize(), window().maximumSize());
  EXPECT_EQ(window().title(), "Install it?");
  const auto size = window().size();
  theme.textScale = 2;
  view->setTheme(theme);
  EXPECT_GT(window().width(), size.width());
  EXPECT_EQ(window().minimumSize(), window().size());
  press(Qt::Key_Escape);
  theme.textScale = 1;
  open({"Other", "One line.", {"OK"}});
  EXPECT_LT(window().height(), size.height()) << "nothing is left of the first";
  EXPECT_LE((window().frameGeometry().center() - screen().center()).manhattanLength(), 40);
}

TEST_F(AlertViews, SpeakAsAnAlertWithItsTextsAndButtons) {
  open(question);
  std::vector<std::string> texts;
  for (const auto& each : spoken()) texts.push_back(each.role + " " + each.name);
  std::erase(texts, "other Install it?");  // the window
  EXPECT_EQ(texts, (std::vector<std::string>{"alert Install it?", "heading Install it?",
                                             "text It takes a few minutes.", "button Install", "button Later",
                                             "button Cancel"}));
  press(Qt::Key_Escape);
  open({"Title alone", "", {"OK"}});
  EXPECT_EQ(std::ranges::count(spoken(), "text", &SpokenItem::role), 0);
}

TEST_F(AlertViews, KeepLongTextsInsideAndTheirButtonsInSight) {
  for (const double scale : {1.0, 3.0}) {
    for (const auto& text : {words(290), std::string(2000, 'W')}) {
      theme.textScale = scale;
      open({scale > 1 ? "עדכון" : "Title", text, {"OK", "Cancel"}});
      EXPECT_TRUE(screen().contains(window().geometry())) << scale;
      EXPECT_EQ(outside(*window().contentItem(), window().width()), std::vector<std::string>()) << scale;
      for (const auto* button : {"OK", "Cancel"}) {
        EXPECT_GT(place(button).top(), window().height() / 2.0) << scale;
        EXPECT_LE(place(button).bottom(), window().height()) << scale;
      }
      EXPECT_EQ(place("OK").left() < place("Cancel").left(), scale > 1)
          << "the first is at the end of the line";
      for (int i = 0; i < 30; ++i) press(Qt::Key_PageDown);
      EXPECT_LE(place(text).bottom(), place("OK").top()) << scale;
      press(Qt::Key_Escape);
      open({"Next", text, {"OK"}});
      EXPECT_GT(place(text).top(), 0) << "from its top again";
      press(Qt::Key_Escape);
    }
  }
  open({words(60), words(60), {words(60), words(60)}});
  for (int i = 0; i < 2; ++i) {
    const auto at = window().activeFocusItem()->mapRectToScene({0, 0, 1, 1});
    EXPECT_TRUE(at.top() >= 0 && at.top() < window().height()) << i;
    press(Qt::Key_Tab);
  }
}

TEST_F(AlertViews, DrawNothingWhileNothingChanges) {
  open(question);
  view->setTheme(theme);
  view->activate();
  EXPECT_EQ(frames(), 0);
  theme.appearance = Appearance::dark;
  view->setTheme(theme);
  EXPECT_EQ(frames(), 1);
  EXPECT_LT(colorAt(3, 3).lightness(), 100);
}

TEST_F(AlertViews, AreTheSameAsTheirPictures) {
  const auto file = alertPicture(question, theme, log);
  ASSERT_TRUE(file) << file.error();
  const auto picture = QImage::fromData(QByteArray::fromStdString(*file));
  open(question);
  unfocus();
  EXPECT_EQ(picture.convertToFormat(QImage::Format_RGB32),
            window().grabWindow().convertToFormat(QImage::Format_RGB32));
}

}  // namespace
}  // namespace ostrel
