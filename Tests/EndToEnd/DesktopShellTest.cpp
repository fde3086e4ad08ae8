#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QDBusVariant>
#include <algorithm>
#include <csignal>
#include <fstream>
#include <functional>
#include <string>

#include "Platform/Desktop/Shell/DBusTypes.hpp"
#include "Tests/Desktop/SessionBus.hpp"
#include "Tests/Desktop/TrayWatcher.hpp"

namespace ostrel {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

constexpr const char* shellName = "OstrelAgent.app/Contents/PlugIns/Shell.so";
constexpr const char* viewsName = "OstrelAgent.app/Contents/PlugIns/Views.so";

/// What a process was started with as the toolkit's platform, with the variable's name; empty without it.
std::string platformOf(pid_t process) {
  std::ifstream file("/proc/" + std::to_string(process) + "/environ", std::ios::binary);
  std::string variable;
  while (std::getline(file, variable, '\0')) {
    if (variable.starts_with("QT_QPA_PLATFORM=")) return variable;
  }
  return {};
}

std::string platformOf(const Process::Environment& environment) {
  const auto chosen = environment.find("QT_QPA_PLATFORM");
  return chosen == environment.end() ? "" : "QT_QPA_PLATFORM=" + chosen->second;
}

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
  TemporaryFolder place;
  std::string agent = AGENT;
  Process::Environment environment{{"HOME", "/Users/robin"},
                                   {"LC_ALL", "C.UTF-8"},
                                   {"OSTREL_HOST_ROOT", place / "root"},
                                   {"XDG_RUNTIME_DIR", place.path()},
                                   {"DBUS_SESSION_BUS_ADDRESS", bus.address()},
                                   {"QT_QPA_PLATFORM", "offscreen"}};
};

TEST_F(DesktopShell, ShowsTheVerdictAsIconAndQuitsByItsMenu) {
  auto process = menuBar();
  ASSERT_TRUE(isRegistered(process));
  EXPECT_TRUE(becomesLabelled(process, "Ostrel Agent: protected"));
  EXPECT_EQ(qdbus_cast<QList<DBusPixmap>>(property(process, "IconPixmap")).size(), 3);
  control({"scenario", "daemon-down"});
  EXPECT_TRUE(becomesLabelled(process, "Ostrel Agent: not protected"));
  const auto layout = answerTo(desktop, callOf(itemOf(process), "/StatusItemMenu", "com.canonical.dbusmenu",
                                               "GetLayout", {0, -1, QStringList()}));
  const auto root = qdbus_cast<DBusMenuItem>(layout.arguments().value(1));
  ASSERT_FALSE(root.children.isEmpty());
  EXPECT_EQ(root.children.last().properties.value("label"), "Quit status icon");
  const auto answer = answerTo(
      desktop, callOf(itemOf(process), "/StatusItemMenu", "com.canonical.dbusmenu", "Event",
                      {root.children.last().id, "clicked", QVariant::fromValue(QDBusVariant("")), 0U}));
  EXPECT_EQ(answer.type(), QDBusMessage::ReplyMessage);
  EXPECT_EQ(process.end(), 0);
  EXPECT_EQ(process.error(), "");
  EXPECT_EQ(process.output(), "");
}

TEST_F(DesktopShell, EndsBySignalsWhileItsHelperLivesOn) {
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    control({"scenario", "helper-hangs-ignoring-term"});
    auto process = menuBar();
    ASSERT_TRUE(isRegistered(process));
    EXPECT_TRUE(becomesTrue([&] { return processesWith(place.path()).size() == 2; }));
    const auto item = itemOf(process);
    process.signal(signal);
    EXPECT_EQ(process.end(10s), 128 + signal);
    EXPECT_EQ(process.error(), "");
    EXPECT_TRUE(spinUntil([&] { return !desktop.interface()->isServiceRegistered(item).value(); }));
  }
}

TEST_F(DesktopShell, TakesAClickBeforeTheFirstReport) {
  control({"scenario", "helper-hangs"});
  auto process = menuBar();
  ASSERT_TRUE(isRegistered(process));
  for (int again = 0; again < 3; ++again) {
    EXPECT_EQ(click(process).type(), QDBusMessage::ReplyMessage);
  }
  EXPECT_EQ(property(process, "IconAccessibleDesc"), "Ostrel Agent: status not reported");
  control({"scenario", "protected"});
  EXPECT_TRUE(becomesLabelled(process, "Ostrel Agent: protected"));
  process.signal(SIGTERM);
  EXPECT_EQ(process.end(), 128 + SIGTERM);
  EXPECT_EQ(process.error(), "");
}

TEST_F(DesktopShell, LivesWithoutASessionBus) {
  environment["DBUS_SESSION_BUS_ADDRESS"] = "unix:path=" + place / "nothing";
  auto process = menuBar();
  control({"scenario", "helper-hangs"});
  EXPECT_TRUE(becomesTrue([&] { return processesWith(place.path()).size() == 2; }));
  process.signal(SIGTERM);
  EXPECT_EQ(process.end(), 128 + SIGTERM);
  EXPECT_TRUE(process.error().starts_with("ostrel: the icon cannot be shown: ")) << process.error();
  EXPECT_EQ(std::ranges::count(process.error(), '\n'), 1) << process.error();
}

TEST_F(DesktopShell, FallsBackToTheConsoleWithALineInTheLogWhenItsPlugInIsOfNoUse) {
  copyBundle();
  const auto whole = place.read(shellName);
  const auto path = place / shellName;
  const std::function<void()> rows[] = {
      [&] { fs::remove(path); },
      [&] { place.write(shellName, whole.substr(0, whole.size() / 2)); },
      [&] { place.write(shellName, whole.substr(0, whole.size() - 1)); },
      [&] { place.write(shellName, "no plug-in"); },
      [&] { place.write(shellName, ""); },
      [&] { fs::remove(path), fs::create_directory(path); },
      [&] { fs::remove_all(path), fs::copy_file(place / viewsName, path); },
      [&] { fs::remove(path), fs::copy_file(OTHER_SHELL, path); },
  };
  for (const auto& arrange : rows) {
    arrange();
    auto process = menuBar("panel\n");
    process.awaitOutput("✓ Protected");
    process.write("quit\n");
    EXPECT_EQ(process.end(), 0);
    EXPECT_TRUE(process.error().starts_with("ostrel: the plug-in " + path)) << process.error();
    EXPECT_EQ(std::ranges::count(process.error(), '\n'), 1) << process.error();
  }
}

TEST_F(DesktopShell, TellsOnceWhenTheViewsAreOfNoUse) {
  copyBundle();
  place.write(viewsName, "no plug-in");
  auto process = menuBar();
  ASSERT_TRUE(isRegistered(process));
  ASSERT_TRUE(becomesLabelled(process, "Ostrel Agent: protected"));
  for (int again = 0; again < 3; ++again) click(process);
  process.signal(SIGTERM);
  EXPECT_EQ(process.end(), 128 + SIGTERM);
  EXPECT_TRUE(process.error().starts_with("ostrel: the panel cannot be shown: ")) << process.error();
  EXPECT_EQ(std::ranges::count(process.error(), '\n'), 1) << process.error();
}

TEST_F(DesktopShell, FallsBackToTheConsoleWithoutADisplay) {
  struct Row {
    Process::Environment variables;
    bool tells;
  };
  const Row rows[] = {
      {{}, false},
      {{{"DISPLAY", ""}, {"WAYLAND_DISPLAY", ""}, {"QT_QPA_PLATFORM", ""}}, false},
      {{{"DISPLAY", ":4242"}}, true},
      {{{"WAYLAND_DISPLAY", "nowhere"}}, true},
      {{{"DISPLAY", ":4242"}, {"QT_QPA_PLATFORM", ""}}, true},
      {{{"DISPLAY", ":4242"}, {"QT_QPA_PLATFORM", "xcb"}}, true},
      {{{"QT_QPA_PLATFORM", "nonsense"}}, true},
  };
  environment.erase("QT_QPA_PLATFORM");
  control({"scenario", "helper-hangs"});
  const auto before = environment;
  for (const auto& [variables, tells] : rows) {
    environment = before;
    environment.insert(variables.begin(), variables.end());
    auto process = menuBar("panel\n");
    process.awaitOutput("Ostrel Agent: status not reported\n");
    pid_t helper = 0;
    EXPECT_TRUE(becomesTrue([&] {
      for (const auto other : processesWith(place.path())) {
        if (other != process.number()) helper = other;
      }
      return helper != 0;
    }));
    EXPECT_EQ(platformOf(helper), platformOf(variables));
    process.write("quit\n");
    EXPECT_EQ(process.end(), 0);
    EXPECT_EQ(process.error().find("ostrel: the display cannot be opened\n") != std::string::npos, tells)
        << process.error();
    EXPECT_EQ(process.error().empty(), !tells) << process.error();
  }
}

TEST_F(DesktopShell, IsAProgramWithoutTheToolkit) {
  environment["LD_TRACE_LOADED_OBJECTS"] = "1";
  const auto libraries = run({agent, "menubar"}, environment);
  EXPECT_NE(libraries.output.find("libc.so"), std::string::npos) << libraries.output;
  EXPECT_EQ(libraries.output.find("libQt"), std::string::npos) << libraries.output;
  EXPECT_EQ(libraries.output.find("libdbus"), std::string::npos) << libraries.output;
}

}  // namespace
}  // namespace ostrel
