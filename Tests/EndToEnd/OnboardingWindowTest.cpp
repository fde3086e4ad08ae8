#include <unistd.h>

#include <cstdlib>
#include <nlohmann/json.hpp>
#include <optional>

#include "Platform/SimulatedMac/HostRoot.hpp"
#include "Tests/EndToEnd/DesktopShell.hpp"

namespace ostrel {
namespace {

using Json = nlohmann::json;

/// The window on a display, in which a person types and presses Enter; a Mac on which only the package is
/// installed, with its daemon.
struct OnboardingWindowStory : DesktopShell {
  OnboardingWindowStory() {
    environment.erase("QT_QPA_PLATFORM");
    environment["DISPLAY"] = std::getenv("DISPLAY");
    control({"scenario", "fresh-install"});
    control({"install", "--without-token"});
    daemon.emplace(std::vector<std::string>{CONTROL, "serve"}, environment);
    daemon->awaitOutput("Serving");
  }

  void TearDown() override {
    const auto job = "gui/" + std::to_string(::getuid()) + "/tech.brenn.ostrel-agent.menubar";
    run({place / "root/bin/launchctl", "bootout", job}, environment);
    control({"stop"});
    EXPECT_EQ(daemon->end(), 0);
    DesktopShell::TearDown();
  }

  /// What the tool that plays the person prints.
  std::string person(std::vector<std::string> keys) const {
    keys.insert(keys.begin(), "xdotool");
    return run(keys, environment).output;
  }

  void type(const std::string& text) const { person({"type", "--delay", "2", text}); }
  void pressEnter() const { person({"key", "Return"}); }

  void awaitWindow() {
    EXPECT_TRUE(becomesTrue([&] {
      window = person({"search", "--onlyvisible", "--name", "Ostrel Agent"});
      return !window.empty();
    }));
    window.resize(window.find('\n'));
    EXPECT_TRUE(becomesTrue([&] { return person({"getwindowfocus"}) == window + "\n"; }));
  }

  std::string geometry() const { return person({"getwindowgeometry", window}); }

  /// Each stage of the window has a height of its own.
  bool changesItsHeightFrom(const std::string& before) const {
    return becomesTrue([&] { return geometry() != before; });
  }

  Json state(const char* macPath) const { return Json::parse(place.read("root" + std::string(macPath))); }

  Json report() const {
    const auto bundle = fs::path(AGENT).parent_path().parent_path();
    return Json::parse(
        run({bundle / "Helpers/ostrel-agent-endpoint", "status", "--json"}, environment).output);
  }

  std::optional<Process> daemon;
  std::string window;
};

TEST_F(OnboardingWindowStory, LeadsFromNothingToAProtectedMacWithItsIcon) {
  control({"misbehave", "refuse", "used_up"});
  control({"trust", "cancel"});
  Process first({agent}, environment);
  awaitWindow();
  const auto atStart = geometry();
  type("zq_enroll_1234");
  pressEnter();
  EXPECT_TRUE(changesItsHeightFrom(atStart)) << "the refusal stands under the field";
  EXPECT_NE(report()["enrolled"], true);
  const auto refused = geometry();
  control({"misbehave", "none"});
  pressEnter();
  EXPECT_TRUE(changesItsHeightFrom(refused)) << "the token was still there";
  EXPECT_TRUE(becomesTrue([&] { return report()["enrolled"] == true; }));
  EXPECT_NE(report()["ca_trusted"], true);
  control({"trust", "accept"});
  EXPECT_TRUE(becomesTrue([&] {
    pressEnter();
    return report()["ca_trusted"] == true;
  }));

  EXPECT_TRUE(
      becomesTrue([&] { return state(simulatedstate::systemExtension)["awaiting"] == "activation"; }));
  control({"approve"});
  EXPECT_TRUE(becomesTrue([&] { return report()["health"]["verdict"] == "protected"; }));
  const auto jobFile = place / "root/Users/robin/Library/LaunchAgents/tech.brenn.ostrel-agent.menubar.plist";
  EXPECT_TRUE(fs::exists(jobFile));
  EXPECT_TRUE(spinUntil([&] { return watcher.items.size() == 1; })) << "the icon of the agent";
  const auto label = callOf(watcher.items.first(), "/StatusNotifierItem", "org.freedesktop.DBus.Properties",
                            "Get", {"org.kde.StatusNotifierItem", "IconAccessibleDesc"});
  EXPECT_TRUE(spinUntil([&] {
    return answerTo(desktop, label).arguments().value(0).value<QDBusVariant>().variant() ==
           "Ostrel Agent: protected";
  }));

  std::string done;
  EXPECT_TRUE(becomesTrue([&] { return std::exchange(done, geometry()) == done && done != atStart; }));
  control({"set", "network.transparent_proxies", R"([{"enabled":false,"connected":false}])"});
  EXPECT_TRUE(changesItsHeightFrom(done));
  pressEnter();
  EXPECT_TRUE(becomesTrue([&] { return state(simulatedstate::transparentProxies)[0]["enabled"] == true; }));

  const auto second = run({agent, "repair"}, environment);
  EXPECT_EQ(second.status, 0) << "the window of the first comes to the front";
  EXPECT_TRUE(becomesTrue([&] { return geometry() == done; }));
  pressEnter();
  EXPECT_EQ(first.end(), 0);
  EXPECT_EQ(first.error(), "");
}

}  // namespace
}  // namespace ostrel
