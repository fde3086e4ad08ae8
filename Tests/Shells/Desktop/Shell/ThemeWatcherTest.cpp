#include "Shells/Desktop/Shell/ThemeWatcher.hpp"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QFont>
#include <QPalette>
#include <memory>
#include <vector>

#include "Tests/Shells/Desktop/Shell/DesktopTest.hpp"
#include "Tests/Shells/Desktop/Shell/SettingsPortal.hpp"

namespace ostrel {
namespace {

const QString appearance = QStringLiteral("org.freedesktop.appearance");
const QString interface = QStringLiteral("org.gnome.desktop.interface");

SettingsPortal::Settings scheme(const QVariant& value) { return {{appearance, {{"color-scheme", value}}}}; }

struct ThemeWatcherTest : DesktopTest {
  void watch() {
    watcher = std::make_unique<ThemeWatcher>(program, [this] { themes.push_back(watcher->theme()); });
  }

  /// Waits until earlier messages have arrived: the bus keeps their order, so a later call is answered after.
  void settle() {
    for (int round = 0; round < 2; ++round) {
      answerTo(program.connection(),
               callOf("org.freedesktop.DBus", "/", "org.freedesktop.DBus", "GetId", {}));
      answerTo(desktop, callOf("org.freedesktop.DBus", "/", "org.freedesktop.DBus", "GetId", {}));
    }
    QCoreApplication::processEvents();
  }

  bool becomes(const DesktopTheme& theme) {
    return spinUntil([&] { return watcher->theme() == theme; });
  }

  std::vector<DesktopTheme> themes;
  std::unique_ptr<ThemeWatcher> watcher;
};

constexpr DesktopTheme light{};
constexpr DesktopTheme dark{.appearance = Appearance::dark};

TEST_F(ThemeWatcherTest, TakesTheThemeFromThePortalAndFollowsIt) {
  SettingsPortal portal(desktop, {{appearance, {{"color-scheme", 1U}, {"reduced-motion", 1U}}},
                                  {interface, {{"text-scaling-factor", 1.5}, {"enable-animations", true}}}});
  watch();
  EXPECT_EQ(watcher->theme(), light);
  EXPECT_TRUE(becomes({.appearance = Appearance::dark, .reducesMotion = true, .textScale = 1.5}));
  EXPECT_EQ(portal.asked, QList<QStringList>{QStringList({appearance, interface})});
  portal.change(appearance, "color-scheme", 2U);
  EXPECT_TRUE(becomes({.reducesMotion = true, .textScale = 1.5}));
  portal.change(appearance, "reduced-motion", 0U);
  EXPECT_TRUE(becomes({.textScale = 1.5}));
  portal.change(interface, "enable-animations", false);
  EXPECT_TRUE(becomes({.reducesMotion = true, .textScale = 1.5}));
  portal.change(interface, "text-scaling-factor", 1.0);
  EXPECT_TRUE(becomes({.reducesMotion = true}));
  EXPECT_EQ(themes.size(), 5U);
}

TEST_F(ThemeWatcherTest, ReportsAChangeOnce) {
  SettingsPortal portal(desktop, scheme(0U));
  watch();
  settle();
  EXPECT_EQ(themes.size(), 0U);
  for (int again = 0; again < 3; ++again) portal.change(appearance, "color-scheme", 1U);
  portal.change(appearance, "accent-color", 7U);
  portal.change("org.example", "color-scheme", 2U);
  settle();
  EXPECT_EQ(themes, std::vector{dark});
}

TEST_F(ThemeWatcherTest, IgnoresWhatIsOfAnotherType) {
  SettingsPortal portal(desktop, scheme("dark"));
  watch();
  settle();
  EXPECT_TRUE(themes.empty());
  portal.change(appearance, "color-scheme", 1U);
  ASSERT_TRUE(becomes(dark));
  for (const QVariant& value :
       {QVariant("light"), QVariant(2.0), QVariant(false), QVariant(QStringList("2"))}) {
    portal.change(appearance, "color-scheme", value);
    portal.change(appearance, "reduced-motion", value);
  }
  portal.change(interface, "enable-animations", 0);
  portal.change(interface, "text-scaling-factor", "3");
  auto signal = QDBusMessage::createSignal("/org/freedesktop/portal/desktop",
                                           "org.freedesktop.portal.Settings", "SettingChanged");
  desktop.send(signal << appearance << "color-scheme" << 2U);
  settle();
  EXPECT_EQ(themes, std::vector{dark});
}

TEST_F(ThemeWatcherTest, SurvivesAPortalThatAnswersSomethingElse) {
  const QVariant answers[] = {QVariant("dark"), QVariant(QVariantMap{{appearance, 1U}}), QVariant(7)};
  for (const auto& answer : answers) {
    SettingsPortal portal(desktop, {});
    portal.answer = answer;
    watch();
    EXPECT_TRUE(spinUntil([&] { return !portal.asked.isEmpty(); }));
    settle();
    EXPECT_EQ(watcher->theme(), light);
    watcher.reset();
  }
}

TEST_F(ThemeWatcherTest, TakesPaletteAndFontWithoutAPortal) {
  const QPalette before = QGuiApplication::palette();
  watch();
  settle();
  EXPECT_EQ(watcher->theme(), light);
  QGuiApplication::setPalette(QPalette(QColor(30, 30, 30)));
  EXPECT_TRUE(becomes(dark));
  QFont large = QGuiApplication::font();
  large.setPointSizeF(22);
  QGuiApplication::setFont(large);
  EXPECT_TRUE(becomes({.appearance = Appearance::dark, .textScale = 2}));
  QGuiApplication::setPalette(before);
  EXPECT_TRUE(becomes({.textScale = 2}));
  EXPECT_EQ(themes.size(), 3U);
  QGuiApplication::setFont(QFont());
}

TEST_F(ThemeWatcherTest, AsksAPortalThatAppearsLaterAndNeverWaitsForOne) {
  QElapsedTimer timer;
  timer.start();
  SettingsPortal silent(desktop, {});
  silent.answer = {};
  watch();
  EXPECT_LT(timer.elapsed(), 1000);
  EXPECT_TRUE(spinUntil([&] { return silent.asked.size() == 1; }));
  EXPECT_EQ(watcher->theme(), light);
  watcher.reset();
  watch();
  auto other = bus.connect();
  desktop.unregisterService("org.freedesktop.portal.Desktop");
  const SettingsPortal portal(other, scheme(1U));
  EXPECT_TRUE(becomes(dark));
}

}  // namespace
}  // namespace ostrel
