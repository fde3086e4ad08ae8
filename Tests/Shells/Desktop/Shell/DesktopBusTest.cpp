#include "Shells/Desktop/Shell/DesktopBus.hpp"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <tuple>
#include <vector>

#include "Shells/Desktop/Shell/StatusItemMenu.hpp"
#include "Shells/Desktop/Shell/StatusNotifierItem.hpp"
#include "Shells/Desktop/Shell/ThemeWatcher.hpp"
#include "Tests/Shells/Desktop/Shell/DesktopTest.hpp"
#include "Tests/Shells/Desktop/Shell/SettingsPortal.hpp"
#include "Tests/Shells/Desktop/Shell/TrayWatcher.hpp"

namespace ostrel {
namespace {

/// Everything of the program that is on the bus.
struct OnBus {
  OnBus(const QString& address, Log& log) : bus(address, log), item(bus, "/Menu", log, [](QPoint) {}) {
    item.show();
    menu.setButtons({{.title = "Quit", .action = PanelAction::quitStatusIcon}});
  }

  DesktopBus bus;
  ThemeWatcher themeWatcher{bus, [] {}};
  StatusItemMenu menu{bus, [](const PanelButton&) {}};
  StatusNotifierItem item;
};

struct DesktopBusTest : DesktopTest {
  QString address() const { return QString::fromStdString(bus.address()); }

  bool hasMissed(const OnBus& late) const {
    return spinUntil([&] { return late.bus.isMissing(); }) && log.lines.size() == 1 &&
           log.lines[0].starts_with("ostrel: the session bus cannot be reached: ");
  }
};

TEST_F(DesktopBusTest, JoinsABusThatHasBeenSilentAsSoonAsItAnswers) {
  const TrayWatcher watcher(desktop);
  const SettingsPortal portal(desktop, {{"org.freedesktop.appearance", {{"color-scheme", 1U}}}});
  bus.pause();
  QElapsedTimer timer;
  timer.start();
  OnBus late(address(), log);
  EXPECT_LT(timer.elapsed(), 500);
  EXPECT_TRUE(hasMissed(late));
  bus.resume();
  EXPECT_TRUE(spinUntil([&] { return watcher.items.size() == 1; }));
  EXPECT_TRUE(spinUntil([&] { return late.themeWatcher.theme().appearance == Appearance::dark; }));
  EXPECT_FALSE(late.bus.isMissing());
  EXPECT_EQ(log.lines.size(), 1U);
}

TEST_F(DesktopBusTest, LogsOnceThatABusIsMissing) {
  const TemporaryFolder folder;
  folder.write("file", "no socket");
  for (const auto& place :
       {"unix:path=" + folder / "missing", "unix:path=" + folder / "file", std::string("nonsense")}) {
    const OnBus lone(QString::fromStdString(place), log);
    EXPECT_TRUE(hasMissed(lone)) << place;
    log.lines.clear();
  }
  bus.pause();
  const OnBus silent(address(), log);
  bus.kill();
  EXPECT_TRUE(hasMissed(silent)) << "it ends before it has answered";
}

TEST_F(DesktopBusTest, LooksForTheBusWhereTheEnvironmentSaysThatItIs) {
  const auto before = qgetenv("DBUS_SESSION_BUS_ADDRESS");
  const auto folder = qgetenv("XDG_RUNTIME_DIR");
  const std::tuple<const char*, const char*, const char*> rows[] = {
      {" unix:path=/a b\n", "/run/7", "unix:path=/a b"},
      {"", "/run/7", "unix:path=/run/7/bus;autolaunch:"},
      {"", "/run/ü ~;,=%", "unix:path=/run/%C3%BC%20%7E%3B%2C%3D%25/bus;autolaunch:"},
      {"", "", "autolaunch:"},
  };
  for (const auto& [address, runtime, expected] : rows) {
    qputenv("DBUS_SESSION_BUS_ADDRESS", address);
    qputenv("XDG_RUNTIME_DIR", runtime);
    EXPECT_EQ(sessionBusAddress(), expected);
  }
  qputenv("DBUS_SESSION_BUS_ADDRESS", before);
  qputenv("XDG_RUNTIME_DIR", folder);
}

}  // namespace
}  // namespace ostrel
