#include <QColor>
#include <QGlyphRun>
#include <QGuiApplication>
#include <QImage>
#include <QScreen>
#include <QTextLayout>

#include <set>
#include <utility>

#include "Shells/Desktop/Views/Common/Picture.hpp"
#include "Shells/Desktop/Views/Panel/PanelValues.hpp"
#include "Tests/OstrelAgent/SnapshotBuilders.hpp"
#include "Tests/Shells/Desktop/Views/PanelTest.hpp"

namespace ostrel {
namespace {

class PanelTheme : public PanelTest {
 protected:
  /// Below the header's words, beside the cards.
  QColor background() const { return colorAt(5, 100); }
};

std::set<double> separatorHeights(const QQuickItem& item) {
  if (QLatin1String(item.metaObject()->className()).startsWith(QLatin1String("Separator")))
    return {item.height()};
  std::set<double> heights;
  for (const auto* child : item.childItems()) heights.merge(separatorHeights(*child));
  return heights;
}

PanelContent withLongTexts() {
  auto content = unprotectedContent();
  const std::string word(400, 'W');
  std::string words;
  for (int i = 0; i < 60; ++i) words += "Wörter ";
  content.header.word = words;
  content.header.deadlineLine = word;
  content.headerButtons[0].title = words;
  content.cards[0].title = word;
  content.cards[0].detail = words;
  content.cards[0].button = PanelButton{words, PanelAction::trustDeviceCA};
  content.cards[1].state.text = word;
  content.cards[1].action = word;
  auto protection = content.protection.value_or(PanelContent::Protection());
  protection.guard.label = word;
  protection.egressLock.state.text = word;
  protection.egressLock.note = word;
  protection.containers.label = words;
  protection.containers.state.text = words;
  protection.offNote = word;
  for (int i = 0; i < 60; ++i) {
    protection.ecosystems.push_back({"ecosystem" + std::to_string(i), RowState::warn("not covered")});
  }
  protection.ecosystems.push_back({word, RowState::off(word)});
  content.protection = std::move(protection);
  auto health = content.health.value_or(PanelContent::Health());
  health.rollup.state.text = words;
  health.components.at(0).note = word;
  content.health = std::move(health);
  content.facts[0].value = word;
  content.facts[1].label = words;
  for (auto* buttons : {&content.footerButtons, &content.moreButtons}) {
    for (auto& button : *buttons) button.title = words;
  }
  return content;
}

TEST_F(PanelTheme, KeepsLongTextsInside) {
  auto content = withLongTexts();
  for (const bool isRightToLeft : {false, true}) {
    for (const double scale : {1.0, 2.0, 3.0}) {
      content.direction = isRightToLeft ? TextDirection::rightToLeft : TextDirection::leftToRight;
      theme.textScale = scale;
      open(content);
      press(Qt::Key_Tab, Qt::ShiftModifier);
      press(Qt::Key_Space);
      frames();
      EXPECT_EQ(outside(*window().contentItem(), 360), std::vector<std::string>()) << scale << isRightToLeft;
      panel->close();
    }
  }
}

TEST(ChipText, PutsTheNameFirstInEitherReadingDirection) {
  // From left to right: the name with its own signs first, or the state and then the name.
  for (const auto& [name, state] : {std::pair("c++", "not covered"), std::pair("c++", "غير مشمول")}) {
    const auto text = valueOf(PanelContent::Ecosystem{name, RowState::warn(state)}).label;
    QTextLayout layout(text, QGuiApplication::font());
    layout.beginLayout();
    layout.createLine();
    layout.endLayout();
    const auto placeOf = [&](const QString& part) {
      return layout.glyphRuns(static_cast<int>(text.indexOf(part)), 1).at(0).boundingRect().left();
    };
    const auto plus = placeOf("+");
    EXPECT_LT(placeOf("c"), plus) << state;
    EXPECT_EQ(plus > placeOf(textOf(state)), textOf(state).isRightToLeft()) << state;
  }
}

TEST_F(PanelTheme, GrowsWithTheTextSize) {
  open(protectedContent());
  const auto usual = place("Egress lock, enforcing").height();
  theme.textScale = 2;
  panel->setTheme(theme);
  frames();
  EXPECT_NEAR(place("Egress lock, enforcing").height(), 2 * usual, 2);
  EXPECT_EQ(window().height(), static_cast<int>(window().contentItem()->childItems()[0]->height()));
  EXPECT_GT(place("Protected").left(), 60);
  theme.textScale = 3;
  panel->setTheme(theme);
  EXPECT_EQ(place("Protected").left(), 16) << "beside the shield the word would be torn";
}

TEST_F(PanelTheme, HasLinesOfOnePixelOnEveryScreen) {
  const auto screens = QGuiApplication::screens();
  ASSERT_NE(screens[0]->devicePixelRatio(), screens[1]->devicePixelRatio());
  for (const auto* screen : screens) {
    const auto room = screen->availableGeometry();
    anchor = {{room.center().x(), room.top()}, {room.x(), room.y(), room.width(), room.height()}};
    open(protectedContent());
    EXPECT_EQ(separatorHeights(*window().contentItem()), std::set{1 / screen->devicePixelRatio()});
    panel->close();
  }
}

TEST_F(PanelTheme, IsMirroredInALanguageFromRightToLeft) {
  auto content = protectedContent();
  open(content);
  EXPECT_GT(place("Check now").left(), 180);
  EXPECT_LT(place("go").left(), 180);
  const builders::Translated hebrew({{"verdict.protected", "מוגן"}, {"row.version", "גרסה"}});
  panel->update(protectedContent());
  EXPECT_LT(place("Check now").right(), 180);
  EXPECT_GT(place("go").right(), 300);
  EXPECT_GT(place("Open Ostrel Agent").left(), 180);
  EXPECT_EQ(place("גרסה, 2.4.0").right(), place("Identity, ost_…9f").right());
  EXPECT_TRUE(isSpoken("מוגן"));
}

TEST_F(PanelTheme, FollowsTheAppearanceWhileItIsOpen) {
  open(protectedContent());
  EXPECT_EQ(background(), QColor("#f6f6f7"));
  theme.appearance = Appearance::dark;
  panel->setTheme(theme);
  EXPECT_EQ(background(), QColor("#232326"));
  EXPECT_GE(frames(), 1);
}

TEST_F(PanelTheme, FadesInOnlyWithMotion) {
  open(protectedContent());
  panel->close();
  frames();
  theme.reducesMotion = true;
  panel->open(protectedContent(), anchor, theme);
  const int still = frames();
  panel->close();
  frames();
  theme.reducesMotion = false;
  panel->open(protectedContent(), anchor, theme);
  EXPECT_GT(frames(), still + 2);
  EXPECT_LE(still, 2);
}

TEST_F(PanelTheme, ShowsTheColourOfTheState) {
  auto content = protectedContent();
  open(content);
  EXPECT_EQ(colorAt(33, 24), QColor("#1e7a46"));
  content.header.tint = RowState::Case::bad;
  panel->update(content);
  EXPECT_EQ(colorAt(33, 24), QColor("#b5352c"));
}

TEST_F(PanelTheme, IsTheSameAsAPicture) {
  const auto content = unprotectedContent();
  const auto file = panelPicture(content, theme, log);
  ASSERT_TRUE(file);
  const auto picture = QImage::fromData(QByteArray::fromStdString(*file));
  open(content);
  const auto shown = window().grabWindow();
  ASSERT_EQ(picture.size(), shown.size());
  EXPECT_EQ(picture.width(), 720);
  EXPECT_EQ(picture.pixelColor(0, 0).alpha(), 0);
  EXPECT_EQ(picture.pixelColor(719, picture.height() - 1).alpha(), 0);
  const QRect inner = picture.rect().adjusted(40, 40, -40, -40);
  EXPECT_EQ(picture.copy(inner).convertToFormat(QImage::Format_RGB32),
            shown.copy(inner).convertToFormat(QImage::Format_RGB32));
}

}  // namespace
}  // namespace ostrel
