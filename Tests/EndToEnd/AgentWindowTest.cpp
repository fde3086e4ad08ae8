#include "Tests/EndToEnd/Mac.hpp"

namespace ostrel {
namespace {

using namespace std::chrono_literals;

constexpr auto oneRefresh = 10s;

TEST(AgentWindow, FollowsTheReportOnTheConsoleAndItsClosingEndsNothing) {
  const Mac mac;
  mac.control({"scenario", "protected"});
  Process agent(mac.command("menubar"), mac.environment, "window health\n");
  agent.awaitOutput("\n✓ Protected · Enrolled\n");
  agent.awaitOutput("\nHealth\n");
  mac.control({"scenario", "filter-off"});
  agent.awaitOutput("✗ Capture", oneRefresh);
  agent.awaitOutput("[1] Turn on network filter");
  Process second(mac.command("menubar"), mac.environment, {});
  EXPECT_EQ(second.end(), 0) << "another agent opens no window";
  agent.write("close\nwindow\n");
  agent.awaitOutput("[✗ Health]");
  agent.write("window identity\n");
  agent.awaitOutput("\nIdentity\n");
  agent.write("quit\n");
  EXPECT_EQ(agent.end(), 0);
}

}  // namespace
}  // namespace ostrel
