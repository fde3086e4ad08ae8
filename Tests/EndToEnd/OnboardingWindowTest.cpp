#include <nlohmann/json.hpp>
#include <optional>

#include "Platform/SimulatedMac/HostRoot.hpp"
#include "Tests/EndToEnd/ShownDesktop.hpp"

namespace ostrel {
namespace {

using Json = nlohmann::json;

/// The window in which the user types and presses Enter; a Mac on which only the package is
/// installed, with its daemon.
struct OnboardingWindowStory : ShownDesktop {
  OnboardingWindowStory() {
    control({"scenario", "fresh-install"});
    control({"install", "--without-token"});
    daemon.emplace(std::vector<std::string>{CONTROL, "serve"}, environment);
    daemon->awaitOutput("Serving");
  }

  void TearDown() override {
    bootOutMenuBarAgent(place / "root", environment);
    control({"stop"});
    EXPECT_EQ(daemon->end(), 0);
    DesktopShell::TearDown();
  }

  void pressEnter() const { xdotool({"key", "Return"}); }

  std::string windows() const { return ShownDesktop::windows("Ostrel Agent"); }

  void awaitWindow() {
    EXPECT_TRUE(becomesTrue([&] { return !(window = windows()).empty(); }));
    EXPECT_TRUE(becomesTrue([&] { return xdotool({"getwindowfocus"}) == window; }));
  }

  /// Each stage of the window has a height of its own.
  std::string geometry() const { return xdotool({"getwindowgeometry", window.substr(0, window.find('\n'))}); }

  /// Presses Enter, which is the window's primary button, until something has become true.
  template <class Condition>
  bool byEnter(Condition condition) const {
    return by([this] { pressEnter(); }, condition);
  }

  /// Types the token in the place of the text in the field.
  void enterToken() const {
    xdotool({"key", "ctrl+a"});
    xdotool({"type", "zq_enroll_1234"});
    pressEnter();
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

TEST_F(OnboardingWindowStory, LeadsFromAFreshInstallToAProtectedMacWithItsIcon) {
  control({"misbehave", "refuse", "used_up"});
  control({"trust", "cancel"});
  Process first({agent}, environment);
  awaitWindow();
  const auto atStart = geometry();
  enterToken();
  EXPECT_TRUE(becomesTrue([&] { return geometry() != atStart; })) << "the refusal is below the field";
  EXPECT_NE(report()["enrolled"], true);
  control({"misbehave", "none"});
  // A key may be lost to a window that has just come.
  EXPECT_TRUE(by([this] { enterToken(); }, [&] { return report()["enrolled"] == true; }));
  EXPECT_NE(report()["ca_trusted"], true);
  control({"trust", "accept"});
  EXPECT_TRUE(byEnter([&] { return report()["ca_trusted"] == true; }));

  EXPECT_TRUE(
      becomesTrue([&] { return state(simulatedstate::systemExtension)["awaiting"] == "activation"; }));
  control({"approve"});
  EXPECT_TRUE(becomesTrue([&] { return report()["health"]["verdict"] == "protected"; }));
  EXPECT_EQ(state(simulatedstate::transparentProxies)[0]["enabled"], true);
  const auto jobFile = place / "root/Users/robin/Library/LaunchAgents/tech.brenn.ostrel-agent.menubar.plist";
  EXPECT_TRUE(becomesTrue([&] { return fs::exists(jobFile); }));
  EXPECT_TRUE(spinUntil([&] { return watcher.items.size() == 1; })) << "the icon of the agent";
  const auto label = callOf(watcher.items.first(), "/StatusNotifierItem", "org.freedesktop.DBus.Properties",
                            "Get", {"org.kde.StatusNotifierItem", "IconAccessibleDesc"});
  EXPECT_TRUE(spinUntil([&] {
    return answerTo(desktop, label).arguments().value(0).value<QDBusVariant>().variant() ==
           "Ostrel Agent: protected";
  }));

  EXPECT_EQ(run({agent, "repair"}, environment).status, 0) << "the window of the first comes to the front";
  EXPECT_TRUE(byEnter([&] { return windows().empty(); })) << "at its end the window is done";
  EXPECT_EQ(first.end(), 0);
  EXPECT_EQ(first.error(), "");
}

}  // namespace
}  // namespace ostrel
