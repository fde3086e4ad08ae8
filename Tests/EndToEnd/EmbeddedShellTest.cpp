#include <csignal>
#include <cstdlib>

#include "Tests/EndToEnd/DesktopShell.hpp"
#include "Tests/Shells/Desktop/Shell/EmbeddingTrayPeer.hpp"

namespace ostrel {
namespace {

using namespace std::chrono_literals;

/// The program on a display with a tray that embeds windows.
struct EmbeddedShell : DesktopShell {
  EmbeddedShell() {
    environment.erase("QT_QPA_PLATFORM");
    environment["DISPLAY"] = std::getenv("DISPLAY");
  }

  bool docks() {
    return spinUntil([&] { return tray.hasEmbedded(22, 22); });
  }

  EmbeddingTrayPeer tray;
  DisplayPeer display;
};

TEST_F(EmbeddedShell, WorksBesideASilentBusAndLeavesTheTrayToItsItemOnceThatAnswers) {
  control({"scenario", "helper-hangs"});
  const auto showsPanel = [&] { return display.showsWindowOf("OstrelAgent"); };
  struct Row {
    bool opens, answers;
  };
  for (const auto& [opens, answers] : {Row{false, false}, Row{true, false}, Row{true, true}}) {
    SCOPED_TRACE(testing::Message() << opens << answers);
    bus.pause();
    auto process = menuBar();
    ASSERT_TRUE(docks());
    if (opens) {
      EXPECT_TRUE(spinUntil([&] { return !showsPanel(); }));
      tray.release(1, {5, 5}, {105, 55});
      EXPECT_TRUE(spinUntil(showsPanel)) << "before the first report";
    }
    if (answers) {
      bus.resume();
      EXPECT_TRUE(isRegistered(process));
      EXPECT_TRUE(spinUntil([&] { return !display.hasWindow(tray.icon()); }));
      EXPECT_TRUE(showsPanel());
    }
    process.signal(SIGTERM);
    EXPECT_EQ(process.end(4s), 128 + SIGTERM);
    EXPECT_EQ(process.error(),
              "ostrel: the session bus cannot be reached: it does not answer\n" + notAuthorized);
  }
}

}  // namespace
}  // namespace ostrel
