#include <gtest/gtest.h>

#include <unistd.h>

#include <csignal>
#include <optional>

#include "Platform/SimulatedMac/HostRoot.hpp"
#include "Tests/EndToEnd/Mac.hpp"

namespace ostrel {
namespace {

constexpr const char* jobFile = "root/Users/robin/Library/LaunchAgents/tech.brenn.ostrel-agent.menubar.plist";
constexpr const char* defaults = "root/Users/robin/Library/Preferences/tech.brenn.ostrel-agent.json";
constexpr const char* agentLog = "root/Users/robin/Library/Logs/tech.brenn.ostrel-agent.menubar.log";

/// A Mac on which only the package is installed, with its daemon.
struct OnboardingStory : testing::Test {
  OnboardingStory() {
    mac.control({"scenario", "fresh-install"});
    mac.control({"install", "--without-token"});
    daemon.emplace(std::vector<std::string>{CONTROL, "serve"}, mac.environment);
    daemon->awaitOutput("Serving");
    mac.control({"approval", "always"});
  }

  void TearDown() override {
    bootOutMenuBarAgent(mac.place / "root", mac.environment);
    mac.control({"stop"});
    EXPECT_EQ(daemon->end(), 0);
  }

  Mac mac;
  std::optional<Process> daemon;
};

TEST_F(OnboardingStory, LeadsFromAFreshInstallToAProtectedMac) {
  mac.environment["DISPLAY"] = ":7";  // so that the agent is started at once; the bundle brings no desktop
  mac.control({"trust", "cancel"});
  Process window(mac.command(""), mac.environment);
  window.awaitOutput("Set up Ostrel Agent");
  window.awaitOutput("[1] Enrol");
  EXPECT_EQ(mac.json(defaults)["OnboardingFlowProcessID"], window.number());

  window.write("token zq_enrol_1234\n");
  window.awaitOutput("Enrollment tokens start with zq_enroll_.");
  mac.control({"misbehave", "refuse", "used_up"});
  window.write("token zq_enroll_1234\n");
  window.awaitOutput("Enrolling this device…");
  window.awaitOutput("token TEXT");
  mac.control({"misbehave", "none"});
  EXPECT_NE(mac.report()["enrolled"], true);

  window.write("token zq_enroll_1234\n");
  window.awaitOutput("Setup can't finish until an administrator allows it.");
  EXPECT_EQ(mac.report()["enrolled"], true);
  EXPECT_NE(mac.report()["ca_trusted"], true);
  mac.control({"trust", "accept"});
  window.write("press 1\n");
  window.awaitOutput("approval required →");
  EXPECT_EQ(mac.report()["ca_trusted"], true);

  mac.control({"deny"});
  window.awaitOutput("system extension activate failed: The request was not authorized.");
  window.awaitOutput("[4] Close");
  window.write("press 2\n");
  window.awaitOutput("Could not open System Settings.");
  window.write("press 1\n");
  window.awaitOutput("approval required →");
  mac.control({"approve"});
  window.awaitOutput("Ostrel Agent is set up");
  EXPECT_EQ(mac.verdict(), "protected");
  EXPECT_TRUE(fs::exists(mac.place / jobFile));
  EXPECT_TRUE(becomesTrue([&] { return mac.place.read(agentLog).contains("Ostrel Agent: protected\n"); }));

  mac.control({"set", "network.transparent_proxies", R"([{"enabled":false,"connected":false}])"});
  window.awaitOutput("[1] Turn on network filter");
  window.write("press 1\n");
  window.awaitOutput("Ostrel Agent is set up");
  window.awaitOutput("[1] Done");
  EXPECT_EQ(mac.verdict(), "protected");

  const Ran second = ostrel::run(mac.command("repair"), mac.environment);
  EXPECT_EQ(second.status, 0) << "the window of the first comes to the front";
  EXPECT_EQ(second.output,
            "the setup window is open already, in process " + std::to_string(window.number()) + "\n");
  window.write("press 1\n");
  EXPECT_EQ(window.end(), 0);
  EXPECT_FALSE(mac.json(defaults).contains("OnboardingFlowProcessID"));
}

TEST_F(OnboardingStory, ADeadProcessInTheDefaultsBlocksNoWindow) {
  Process first(mac.command("repair"), mac.environment);
  first.awaitOutput("Get this Mac protected again");
  first.signal(SIGKILL);
  EXPECT_EQ(first.end(), -SIGKILL);
  ASSERT_TRUE(mac.json(defaults).contains("OnboardingFlowProcessID"));
  const auto ran = ostrel::run(mac.command("repair"), mac.environment, "quit\n");
  EXPECT_EQ(ran.status, 0);
  EXPECT_TRUE(ran.output.contains("Get this Mac protected again"));

  // Another program that got the number is no window.
  mac.place.write(defaults, R"({"OnboardingFlowProcessID":)" + std::to_string(::getpid()) + "}");
  EXPECT_TRUE(
      ostrel::run(mac.command("repair"), mac.environment, "quit\n").output.contains("protected again"));
}

TEST_F(OnboardingStory, ClosesAtOnceWhateverItWaitsFor) {
  mac.control({"misbehave", "silent"});
  for (const auto* input : {"", "token zq_enroll_1234\n"}) {
    Process window(mac.command("onboarding"), mac.environment);
    window.awaitOutput("[1] Enrol");
    window.write(input);
    if (*input != 0) window.awaitOutput("Enrolling this device…");
    window.write("quit\n");
    EXPECT_EQ(window.end(std::chrono::seconds(4)), 0);
    EXPECT_EQ(window.error(), "");
  }
  mac.control({"misbehave", "none"});
  Process window(mac.command("repair"), mac.environment);
  window.awaitOutput("[4] Close");
  window.write("press 1\n");
  window.awaitOutput("approval required →");
  window.write("quit\n");
  EXPECT_EQ(window.end(std::chrono::seconds(4)), 0) << "the activation ends with its window";
}

}  // namespace
}  // namespace ostrel
