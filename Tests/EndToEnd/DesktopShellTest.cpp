#include "Tests/EndToEnd/DesktopShell.hpp"

#include <QDBusConnectionInterface>
#include <algorithm>
#include <csignal>
#include <functional>
#include <sstream>

#include "Shells/Desktop/Shell/DBusTypes.hpp"

namespace ostrel {
namespace {

using namespace std::chrono_literals;

constexpr const char* shellName = "OstrelAgent.app/Contents/PlugIns/Shell.so";
constexpr const char* viewsName = "OstrelAgent.app/Contents/PlugIns/Views.so";

/// A file of the process in /proc.
std::string factOf(pid_t process, const std::string& name) {
  return contentOf("/proc/" + std::to_string(process) + "/" + name);
}

/// What a process was started with as the toolkit's platform, with the variable's name; empty without it.
std::string platformOf(pid_t process) {
  std::istringstream variables(factOf(process, "environ"));
  std::string variable;
  while (std::getline(variables, variable, '\0')) {
    if (variable.starts_with("QT_QPA_PLATFORM=")) return variable;
  }
  return {};
}

bool hasLoaded(const Process& process, std::string_view name) {
  return factOf(process.number(), "maps").find(name) != std::string::npos;
}

std::string platformOf(const Process::Environment& environment) {
  const auto chosen = environment.find("QT_QPA_PLATFORM");
  return chosen == environment.end() ? "" : "QT_QPA_PLATFORM=" + chosen->second;
}

TEST_F(DesktopShell, ShowsTheVerdictAsIconAndQuitsByItsMenu) {
  watcher.isAnswering = false;
  auto process = menuBar();
  ASSERT_TRUE(isRegistered(process)) << "at a watcher that never answers";
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

TEST_F(DesktopShell, ExitsBySignalsWhileItsHelperHangs) {
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

TEST_F(DesktopShell, OpensThePanelBeforeTheFirstReport) {
  control({"scenario", "helper-hangs"});
  auto process = menuBar();
  ASSERT_TRUE(isRegistered(process));
  EXPECT_FALSE(hasLoaded(process, viewsName));
  for (int again = 0; again < 3; ++again) {
    EXPECT_EQ(click(process).type(), QDBusMessage::ReplyMessage);
  }
  EXPECT_TRUE(hasLoaded(process, viewsName)) << "the panel has not opened";
  EXPECT_EQ(property(process, "IconAccessibleDesc"), "Ostrel Agent: status not reported");
  control({"scenario", "protected"});
  EXPECT_TRUE(becomesLabelled(process, "Ostrel Agent: protected"));
  process.signal(SIGTERM);
  EXPECT_EQ(process.end(), 128 + SIGTERM);
  EXPECT_EQ(process.error(), "");
}

TEST_F(DesktopShell, RunsWithoutASessionBusOrWithASilentOne) {
  const SessionBus silent;
  silent.pause();
  control({"scenario", "helper-hangs"});
  for (const auto& address : {"unix:path=" + place / "nothing", silent.address()}) {
    environment["DBUS_SESSION_BUS_ADDRESS"] = address;
    auto process = menuBar();
    EXPECT_TRUE(becomesTrue([&] { return processesWith(place.path()).size() == 2; }));
    // After this time a silent bus counts as missing.
    std::this_thread::sleep_for(1500ms);
    process.signal(SIGTERM);
    EXPECT_EQ(process.end(4s), 128 + SIGTERM);
    EXPECT_TRUE(process.error().starts_with("ostrel: the session bus cannot be reached: "))
        << process.error();
    EXPECT_TRUE(process.error().ends_with(notAuthorized)) << process.error();
    EXPECT_EQ(std::ranges::count(process.error(), '\n'), 2) << process.error();
  }
}

TEST_F(DesktopShell, EntersTheTrayOnceASilentBusAnswers) {
  bus.pause();
  auto process = menuBar();
  std::this_thread::sleep_for(1500ms);  // until the bus counts as missing
  bus.resume();
  EXPECT_TRUE(isRegistered(process));
  EXPECT_TRUE(becomesLabelled(process, "Ostrel Agent: protected"));
  process.signal(SIGTERM);
  EXPECT_EQ(process.end(), 128 + SIGTERM);
  EXPECT_EQ(process.error(),
            "ostrel: the session bus cannot be reached: it does not answer\n" + notAuthorized);
}

TEST_F(DesktopShell, ClosesItsNotificationsAtExit) {
  place.write("root/Users/robin/Library/Preferences/tech.brenn.ostrel-agent.json",
              R"({"ContainerBlockNotifyRuntimes": ["Podman", "Colima"]})");
  control({"scenario", "container-blocked"});
  auto process = menuBar();
  ASSERT_TRUE(spinUntil([&] { return notifications->notified.size() == 2; }));
  EXPECT_TRUE(becomesLabelled(process, "Ostrel Agent: degraded")) << "the daemon has answered";
  process.signal(SIGTERM);
  EXPECT_EQ(process.end(), 128 + SIGTERM);
  EXPECT_TRUE(spinUntil([&] { return notifications->closings == QList<uint>{1, 2}; }));
}

TEST_F(DesktopShell, ShowsTheEmojiWithoutItsGlyphImages) {
  copyBundle();
  for (const char* name : {"ostrel-menubar-light", "ostrel-menubar-dark"}) {
    for (const char* scale : {"", "@2x", "@3x"}) {
      EXPECT_TRUE(fs::remove(place / "OstrelAgent.app/Contents/Resources/" + name + scale + ".png"));
    }
  }
  auto process = menuBar();
  ASSERT_TRUE(isRegistered(process));
  ASSERT_TRUE(becomesLabelled(process, "Ostrel Agent: protected"));
  EXPECT_EQ(property(process, "Title"), "\U0001F6E1");
  EXPECT_EQ(qdbus_cast<QList<DBusPixmap>>(property(process, "IconPixmap")).size(), 3);
  process.signal(SIGTERM);
  EXPECT_EQ(process.end(), 128 + SIGTERM);
  EXPECT_EQ(process.error(), "");
}

TEST_F(DesktopShell, FallsBackToTheConsoleAndLogsThatItsPlugInCannotBeLoaded) {
  copyBundle();
  const auto whole = place.read(shellName);
  const auto path = place / shellName;
  const std::function<void()> rows[] = {
      [&] { fs::remove(path); },
      [&] { place.write(shellName, whole.substr(0, whole.size() / 2)); },
      [&] { fs::remove_all(path), fs::copy_file(place / viewsName, path); },
      [&] { fs::remove(path), fs::copy_file(OTHER_PLUG_IN, path); },
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

TEST_F(DesktopShell, LogsOnceThatTheViewsCannotBeLoaded) {
  copyBundle();
  const auto path = place / viewsName;
  const std::function<void()> rows[] = {
      [&] { place.write(viewsName, "no plug-in"); },
      [&] { fs::remove(path); },
      [&] { fs::copy_file(OTHER_PLUG_IN, path); },
  };
  for (const auto& arrange : rows) {
    arrange();
    auto process = menuBar();
    ASSERT_TRUE(isRegistered(process));
    for (int again = 0; again < 3; ++again) click(process);
    EXPECT_TRUE(becomesLabelled(process, "Ostrel Agent: protected"));
    process.signal(SIGTERM);
    EXPECT_EQ(process.end(), 128 + SIGTERM);
    EXPECT_TRUE(process.error().starts_with("ostrel: the panel cannot be shown: the plug-in " + path))
        << process.error();
    EXPECT_EQ(std::ranges::count(process.error(), '\n'), 1) << process.error();
  }
}

TEST_F(DesktopShell, FallsBackToTheConsoleWithoutADisplay) {
  struct Row {
    Process::Environment variables;
    bool logs;
  };
  const Row rows[] = {
      {{}, false},
      {{{"DISPLAY", ""}, {"WAYLAND_DISPLAY", ""}, {"QT_QPA_PLATFORM", ""}}, false},
      {{{"DISPLAY", ":4242"}}, true},
      {{{"WAYLAND_DISPLAY", "missing"}}, true},
      {{{"DISPLAY", ":4242"}, {"QT_QPA_PLATFORM", ""}}, true},
      {{{"DISPLAY", ":4242"}, {"QT_QPA_PLATFORM", "xcb"}}, true},
      {{{"QT_QPA_PLATFORM", "nonsense"}}, true},
  };
  environment.erase("QT_QPA_PLATFORM");
  control({"scenario", "helper-hangs"});
  const auto before = environment;
  for (const auto& [variables, logs] : rows) {
    environment = before;
    environment.insert(variables.begin(), variables.end());
    auto process = menuBar("panel\n");
    process.awaitOutput("Ostrel Agent: status not reported\n");
    pid_t helper = 0;
    EXPECT_TRUE(becomesTrue([&] {
      for (const auto other : processesWith(place.path())) {
        if (factOf(other, "cmdline").find("ostrel-agent-endpoint") != std::string::npos) helper = other;
      }
      return helper != 0;
    }));
    EXPECT_EQ(platformOf(helper), platformOf(variables));
    process.write("quit\n");
    EXPECT_EQ(process.end(), 0);
    EXPECT_EQ(process.error().find("ostrel: the display cannot be opened\n") != std::string::npos, logs)
        << process.error();
    EXPECT_EQ(process.error().empty(), !logs) << process.error();
  }
}

TEST_F(DesktopShell, TheProgramLinksNoToolkit) {
  environment["LD_TRACE_LOADED_OBJECTS"] = "1";
  const auto libraries = run({agent, "menubar"}, environment);
  EXPECT_NE(libraries.output.find("libc.so"), std::string::npos) << libraries.output;
  EXPECT_EQ(libraries.output.find("libQt"), std::string::npos) << libraries.output;
  EXPECT_EQ(libraries.output.find("libdbus"), std::string::npos) << libraries.output;
}

}  // namespace
}  // namespace ostrel
