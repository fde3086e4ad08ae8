#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <memory>

#include "OstrelAgent/Text/Copy.hpp"
#include "Shells/Desktop/Views/Common/Picture.hpp"
#include "Shells/Desktop/Views/Onboarding/OnboardingViewWindow.hpp"
#include "Shells/Desktop/Views/Onboarding/PasswordField.hpp"
#include "Tests/OstrelAgent/SnapshotBuilders.hpp"
#include "Tests/Shells/Desktop/Views/QtMessages.hpp"
#include "Tests/Shells/Desktop/Views/ViewTest.hpp"

namespace ostrel {
namespace {

namespace stages = onboardingstage;
using enum OnboardingAction;
using Press = std::pair<OnboardingAction, std::string>;
using Texts = Copy::Onboarding;

OnboardingContent contentAt(OnboardingStage stage, const SetupObservation& observation = {}) {
  OnboardingFlowModel model(OnboardingMode::onboard);
  model.stage = std::move(stage);
  model.observation = observation;
  return onboardingContent(model, false);
}

OnboardingContent enterToken(std::optional<std::string> error = {}) {
  return contentAt(stages::EnterToken{std::move(error)});
}

/// Everything but the filter is as it should be.
SetupObservation withFilterOff() {
  SetupObservation observation;
  observation.statusRead = observation.daemonListening = observation.sysextActive = true;
  observation.sysextCode = "SYSEXT_DIVERTING";
  observation.transparentProxyEnabled = false;
  return observation;
}

OnboardingContent checklist(const SetupObservation& observation = {}) {
  return contentAt(stages::Checklist{}, observation);
}

const QQuickItem* fieldIn(const QQuickItem& item) {
  if (qobject_cast<const PasswordField*>(&item)) return &item;
  for (const auto* child : item.childItems()) {
    if (const auto* found = fieldIn(*child)) return found;
  }
  return nullptr;
}

class Onboarding : public ViewTest {
 protected:
  Onboarding() {
    auto made = OnboardingViewWindow::make(
        log, {.pressed = [this](OnboardingAction action,
                                const std::string& token) { pressed.emplace_back(action, token); },
              .closed = [this] { ++closings; }});
    if (!made) throw std::runtime_error(made.error());
    view = std::move(*made);
  }
  ~Onboarding() override {
    EXPECT_EQ(window().isVisible() ? unspoken() : std::vector<std::string>(), std::vector<std::string>());
    QGuiApplication::clipboard()->clear();
  }

  void open(const OnboardingContent& content) {
    view->open(content, theme);
    awaitWindow();
  }

  void type(const std::string& text) {
    for (const char letter : text) {
      QKeyEvent event(QEvent::KeyPress, 0, Qt::NoModifier, QString(QLatin1Char(letter)));
      QCoreApplication::sendEvent(&window(), &event);
    }
  }

  void paste(const std::string& text) {
    QGuiApplication::clipboard()->setText(QString::fromStdString(text));
    press(Qt::Key_V, Qt::ControlModifier);
  }

  /// The text of the field, as it is passed on enrolling.
  std::string typed() {
    pressed.clear();
    press(Qt::Key_Return);
    return pressed.size() == 1 && pressed[0].first == enrol ? pressed[0].second : "not pressed once";
  }

  /// At the start of the field.
  void clickField() {
    const auto* field = fieldIn(*window().contentItem());
    ASSERT_NE(field, nullptr);
    clickAt(field->mapToScene({1, field->height() / 2}));
  }

  std::string fieldName() const { return std::string(Texts::tokenPrompt.text()); }
  bool hasFieldFocus() const { return focused() == fieldName(); }

  std::vector<Press> pressed;
  int closings = 0;
  std::unique_ptr<OnboardingView> view;
};

TEST_F(Onboarding, TakesTheTokenAtOnceAndEnrolsOnEnterWithExactlyIt) {
  open(enterToken());
  EXPECT_TRUE(hasFieldFocus());
  const std::string token = " zq_enroll_aB9 ";
  type(token);
  press(Qt::Key_Return);
  press(Qt::Key_Enter);
  click("Enrol");
  pressBySpeech("Enrol");
  EXPECT_EQ(pressed, (std::vector<Press>(4, {enrol, token})));
  QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, "\r", true);
  QCoreApplication::sendEvent(&window(), &held);
  press(Qt::Key_Escape);
  EXPECT_EQ(pressed.size(), 4U);
  EXPECT_EQ(closings, 0);
}

TEST_F(Onboarding, PassesLongPastesOnWithTheirLineFeeds) {
  open(enterToken());
  const std::string lines = "zq_enroll_a\nb\r\nc\td\n";
  paste(lines);
  EXPECT_EQ(typed(), lines);
  press(Qt::Key_A, Qt::ControlModifier);
  const std::string large(64 * 1024, 'x');
  paste(large);
  EXPECT_EQ(typed(), large);
}

TEST_F(Onboarding, EditsTheTokenByTheUsualKeysAndNeverCopiesIt) {
  open(enterToken());
  type("one");
  paste(" two");
  press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(typed(), "one");
  press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(typed(), "one two");
  QGuiApplication::clipboard()->setText("before");
  press(Qt::Key_A, Qt::ControlModifier);
  press(Qt::Key_C, Qt::ControlModifier);
  press(Qt::Key_X, Qt::ControlModifier);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "before");
  EXPECT_EQ(typed(), "one two");
  press(Qt::Key_A, Qt::ControlModifier);
  press(Qt::Key_Delete);
  EXPECT_EQ(typed(), "");
  view->clearToken();
  press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(typed(), "") << "a token that was enrolled does not come back";
}

TEST_F(Onboarding, EditsTheTokenByMouseAndByTheKeysOfLines) {
  open(enterToken());
  type("abcdef");
  press(Qt::Key_Home);
  press(Qt::Key_Right, Qt::ShiftModifier);
  type("X");
  press(Qt::Key_End);
  press(Qt::Key_Backspace);
  EXPECT_EQ(typed(), "Xbcde");
  press(Qt::Key_Tab);
  ASSERT_EQ(focused(), "Enrol");
  clickField();
  EXPECT_TRUE(hasFieldFocus());
  type("Y");
  EXPECT_EQ(typed(), "YXbcde") << "the click was before all text";
  QInputMethodEvent composed;
  composed.setCommitString(QStringLiteral("ä"));
  QCoreApplication::sendEvent(window().activeFocusItem(), &composed);
  EXPECT_EQ(typed(), "YäXbcde");
}

TEST_F(Onboarding, TokenIsHiddenFromAssistiveToolsInputMethodsAndTheTitle) {
  open(enterToken());
  const QString token = "zq_enroll_secret";
  paste(token.toStdString());
  auto* field = QAccessible::queryAccessibleInterface(window().activeFocusItem());
  ASSERT_NE(field, nullptr);
  EXPECT_EQ(field->role(), QAccessible::EditableText);
  for (int kind = QAccessible::Name; kind <= QAccessible::Accelerator; ++kind) {
    EXPECT_FALSE(field->text(static_cast<QAccessible::Text>(kind)).contains("secret")) << kind;
  }
  if (auto* text = field->textInterface()) {
    EXPECT_FALSE(text->text(0, text->characterCount()).contains("secret"));
  }
  for (const auto query : {Qt::ImSurroundingText, Qt::ImCurrentSelection, Qt::ImTextBeforeCursor,
                           Qt::ImTextAfterCursor, Qt::ImPreferredLanguage, Qt::ImHints}) {
    QInputMethodQueryEvent asked(query);
    QCoreApplication::sendEvent(window().activeFocusItem(), &asked);
    EXPECT_FALSE(asked.value(query).toString().contains("secret")) << query;
    if (query != Qt::ImHints) continue;
    const Qt::InputMethodHints learnsNothing =
        Qt::ImhHiddenText | Qt::ImhSensitiveData | Qt::ImhNoPredictiveText;
    EXPECT_TRUE(Qt::InputMethodHints(asked.value(query).toInt()).testFlags(learnsNothing));
  }
  EXPECT_FALSE(window().title().contains("secret"));
}

TEST_F(Onboarding, KeepsTheTokenWhileItEnrolsAndShowsWhyItFailed) {
  open(enterToken());
  type("zq_enroll_x");
  view->update(contentAt(stages::Enrolling{}));
  EXPECT_TRUE(isSpoken(std::string(Texts::enrolling.text())));
  type("more");
  press(Qt::Key_Return);
  click("Enrol");
  EXPECT_TRUE(pressed.empty());
  view->update(enterToken("It failed."));
  const auto all = spoken();
  EXPECT_TRUE(std::ranges::any_of(
      all, [](const auto& each) { return each.role == "alert" && each.name == "It failed."; }));
  EXPECT_TRUE(std::ranges::any_of(
      all, [](const auto& each) { return each.role == "field" && each.description == "It failed."; }));
  ASSERT_TRUE(hasFieldFocus());
  EXPECT_GT(place("It failed.").top(), window().activeFocusItem()->mapToScene({}).y());
  EXPECT_EQ(typed(), "zq_enroll_x");
  view->clearToken();
  EXPECT_EQ(typed(), "");
}

TEST_F(Onboarding, PressesThePrimaryButtonOnEnterWhereNoButtonHasTheKeyboard) {
  open(contentAt(stages::TrustNeeded{"why"}));
  EXPECT_EQ(focused(), "");
  press(Qt::Key_Return);
  press(Qt::Key_Tab);
  EXPECT_EQ(focused(), "Trust certificate");
  press(Qt::Key_Tab);
  press(Qt::Key_Return);
  EXPECT_EQ(pressed, (std::vector<Press>{{retryTrust, ""}, {deferTrust, ""}}));
  view->update(contentAt(stages::Trusting{}));
  press(Qt::Key_Return);
  EXPECT_EQ(pressed.size(), 2U) << "nothing can be pressed";
  view->update(checklist(withFilterOff()));
  press(Qt::Key_Enter);
  EXPECT_EQ(pressed.back().first, turnOnNetworkFilter);
}

TEST_F(Onboarding, MeetsTheControlsFromTopToBottom) {
  const auto content = checklist();
  open(content);
  std::vector<std::string> met;
  std::vector<std::string> titles;
  for (const auto& button : content.allButtons()) {
    press(Qt::Key_Tab);
    press(Qt::Key_Space);
    met.push_back(focused());
    titles.push_back(button.title);
  }
  EXPECT_EQ(met, titles);
  ASSERT_EQ(pressed.size(), titles.size());
  press(Qt::Key_Tab);
  EXPECT_EQ(focused(), titles[0]);
  view->update(enterToken());
  EXPECT_TRUE(hasFieldFocus()) << "another stage starts at its own first control";
  press(Qt::Key_Tab);
  EXPECT_EQ(focused(), "Enrol");
}

TEST_F(Onboarding, KeepsTheFocusOnAButtonWhileItsRowChanges) {
  OnboardingFlowModel model(OnboardingMode::repair);
  open(onboardingContent(model, false));
  press(Qt::Key_Tab);
  const auto button = focused();
  model.activation = activationstate::Running{"Asking"};
  view->update(onboardingContent(model, true));
  press(Qt::Key_Space);
  EXPECT_TRUE(pressed.empty()) << "it runs already";
  model.activation = activationstate::Failed{"No."};
  view->update(onboardingContent(model, false));
  EXPECT_EQ(focused(), button);
  press(Qt::Key_Space);
  EXPECT_EQ(pressed.size(), 1U);
}

TEST_F(Onboarding, SpeaksEveryPartOfTheChecklist) {
  OnboardingFlowModel model(OnboardingMode::onboard);
  model.stage = stages::Checklist{};
  model.activation = activationstate::Running{"Asking"};
  model.actionError = {OnboardingChecklist::Step::proxy, "No filter."};
  const auto content = onboardingContent(model, true);
  open(content);
  std::vector<std::string> expected = {"heading " + content.header.title, "text " + content.header.subtitle,
                                       "text Asking", "alert No filter."};
  for (const auto& row : content.rows) expected.push_back("group " + row.title + ": " + row.note);
  for (const auto& button : content.allButtons()) expected.push_back("button " + button.title);
  std::vector<std::string> texts;
  for (const auto& each : spoken()) {
    texts.push_back(each.role + " " + each.name + (each.description.empty() ? "" : ": " + each.description));
  }
  for (const auto& text : expected) {
    EXPECT_EQ(std::ranges::count(texts, text), 1) << text << "\nin\n" << testing::PrintToString(texts);
  }
}

TEST_F(Onboarding, IsAWindowInTheMiddleOfTheScreenThatCannotBeResized) {
  open(enterToken());
  const auto available = window().screen()->availableGeometry();
  EXPECT_LE((window().frameGeometry().center() - available.center()).manhattanLength(), 40);
  EXPECT_EQ(window().minimumSize(), window().maximumSize());
  EXPECT_TRUE(window().flags().testFlag(Qt::WindowCloseButtonHint));
  EXPECT_FALSE(window().flags() & (Qt::WindowMinMaxButtonsHint | Qt::FramelessWindowHint));
  EXPECT_EQ(window().title(), "Set Up Ostrel Agent");
  const auto top = window().geometry().topLeft();
  const int height = window().height();
  view->update(checklist());
  EXPECT_GT(window().height(), height);
  EXPECT_EQ(window().geometry().topLeft(), top);
  EXPECT_EQ(window().minimumSize(), window().size());
}

TEST_F(Onboarding, ReportsOnceThatItIsClosed) {
  for (const bool byUser : {true, false}) {
    closings = 0;
    open(enterToken());
    type("zq_enroll_x");
    byUser ? static_cast<void>(window().close()) : view->close();
    EXPECT_EQ(closings, 1) << byUser;
    view->close();
    view->update(checklist());
    EXPECT_FALSE(window().isVisible());
    EXPECT_EQ(closings, 1) << byUser;
  }
  open(enterToken());
  EXPECT_EQ(typed(), "") << "the token went with the window";
}

TEST_F(Onboarding, DrawsNothingWhileNothingChanges) {
  open(enterToken());
  view->update(enterToken());
  view->setTheme(theme);
  EXPECT_EQ(frames(), 0) << "the caret does not blink";
  view->update(contentAt(stages::Trusting{}));
  const int drawn = frames();
  EXPECT_TRUE(drawn == 1 || drawn == 2) << drawn << ": the window's new size may have a frame of its own";
  EXPECT_EQ(frames(), 0) << "waiting moves nothing";
}

/// The content of a checklist with everything it can hold, in words as long as given.
OnboardingContent longContent(const std::string& text) {
  auto content = checklist();
  content.header.title = content.header.subtitle = content.closingNote = content.progress = text;
  content.paragraphs = {text};
  content.tokenField = {true, text};
  for (auto& row : content.rows) {
    row.title = row.note = row.progress = text;
    row.errors = {text, text};
    for (auto& button : row.buttons) button.title = text;
  }
  content.buttons[0].title = text;
  return content;
}

TEST_F(Onboarding, KeepsLongTextsInsideAndScrollsWhatTheScreenCannotHold) {
  std::string words;
  for (int i = 0; i < 60; ++i) words += "Wörter ";
  for (const double scale : {1.0, 3.0}) {
    for (const auto& text : {words, std::string(400, 'W')}) {
      theme.textScale = scale;
      auto content = longContent(text);
      content.direction = scale > 1 ? TextDirection::rightToLeft : TextDirection::leftToRight;
      open(content);
      const auto available = window().screen()->availableGeometry();
      EXPECT_TRUE(available.contains(window().geometry())) << scale;
      EXPECT_EQ(outside(*window().contentItem(), window().width()), std::vector<std::string>()) << scale;
      for (int i = 0; i < 5; ++i) {
        press(Qt::Key_Tab);
        const auto at = window().activeFocusItem()->mapRectToScene({0, 0, 1, 1});
        EXPECT_TRUE(at.top() >= 0 && at.top() < window().height()) << scale << ' ' << i;
      }
      view->close();
    }
  }
}

TEST_F(Onboarding, IsTheSameAsAPicture) {
  const auto content = checklist(withFilterOff());
  const auto file = onboardingPicture(content, theme, log);
  ASSERT_TRUE(file) << file.error();
  const auto picture = QImage::fromData(QByteArray::fromStdString(*file));
  open(content);
  EXPECT_EQ(picture.convertToFormat(QImage::Format_RGB32),
            window().grabWindow().convertToFormat(QImage::Format_RGB32));
}

}  // namespace
}  // namespace ostrel
