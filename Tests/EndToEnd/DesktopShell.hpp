#pragma once

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDBusVariant>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Tests/Shells/Desktop/Shell/NotificationDaemon.hpp"
#include "Tests/Shells/Desktop/Shell/SessionBus.hpp"
#include "Tests/Shells/Desktop/Shell/TrayWatcher.hpp"

namespace ostrel {

namespace fs = std::filesystem;

/// The log line when there is no notification daemon.
inline const std::string notAuthorized =
    "ostrel: notifications are not authorized (status 1); "
    "this Mac cannot be told when it stops being protected\n";

/// The program with a display that shows nothing, over a host root and a session bus of its own.
struct DesktopShell : testing::Test {
  void TearDown() override { EXPECT_TRUE(processesWith(place.path()).empty()) << "a child is left"; }

  void control(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), CONTROL);
    const auto ran = run(arguments, environment);
    ASSERT_EQ(ran.status, 0) << ran.error;
  }

  Process menuBar(std::string_view lines = {}) { return Process({agent, "menubar"}, environment, lines); }

  /// Puts the program into a bundle of the test's own.
  void copyBundle() {
    fs::copy(fs::path(AGENT).parent_path().parent_path().parent_path(), place / "OstrelAgent.app",
             fs::copy_options::recursive);
    agent = place / "OstrelAgent.app/Contents/MacOS/OstrelAgent";
  }

  static QString itemOf(const Process& process) {
    return QStringLiteral("org.kde.StatusNotifierItem-%1-1").arg(process.number());
  }

  bool isRegistered(const Process& process) {
    return spinUntil([&] { return watcher.items.contains(itemOf(process)); });
  }

  QVariant property(const Process& process, const char* name) {
    const auto answer =
        answerTo(desktop, callOf(itemOf(process), "/StatusNotifierItem", "org.freedesktop.DBus.Properties",
                                 "Get", {"org.kde.StatusNotifierItem", name}));
    return answer.arguments().value(0).value<QDBusVariant>().variant();
  }

  bool becomesLabelled(const Process& process, const char* label) {
    return spinUntil([&] { return property(process, "IconAccessibleDesc") == label; });
  }

  QDBusMessage click(const Process& process) {
    return answerTo(desktop, callOf(itemOf(process), "/StatusNotifierItem", "org.kde.StatusNotifierItem",
                                    "Activate", {640, 10}));
  }

  int count = 1;
  char word[5] = "test";
  char* words[2] = {word, nullptr};
  QCoreApplication application{count, words};
  SessionBus bus;
  QDBusConnection desktop = bus.connect();
  TrayWatcher watcher{desktop};
  std::optional<NotificationDaemon> notifications{desktop};
  TemporaryFolder place;
  std::string agent = AGENT;
  Process::Environment environment{{"HOME", "/Users/robin"},
                                   {"LC_ALL", "C.UTF-8"},
                                   {"OSTREL_HOST_ROOT", place / "root"},
                                   {"XDG_RUNTIME_DIR", place.path()},
                                   {"DBUS_SESSION_BUS_ADDRESS", bus.address()},
                                   {"QT_QPA_PLATFORM", "offscreen"}};
};

}  // namespace ostrel
