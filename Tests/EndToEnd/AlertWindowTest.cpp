#include <QImage>
#include <algorithm>
#include <csignal>
#include <mutex>

#include "SimulatedEndpoint/ControlServer.hpp"
#include "SimulatedEndpoint/EndpointFiles.hpp"
#include "Tests/EndToEnd/ShownDesktop.hpp"

namespace ostrel {
namespace {

/// A daemon that is too old to know any action, and records its requests.
class OldDaemon {
 public:
  explicit OldDaemon(const std::string& hostRoot)
      : socket_(simulated::ListeningSocket::at(hostRoot + simulated::endpointfiles::controlSocket).value()) {}
  OldDaemon(const OldDaemon&) = delete;
  OldDaemon& operator=(const OldDaemon&) = delete;
  ~OldDaemon() { (void)stop_.writing.close(); }

  std::ptrdiff_t updates() const {
    const std::lock_guard lock(mutex_);
    return std::ranges::count(requests_, R"({"action":"update"})");
  }

 private:
  simulated::Reply answer(const std::string& request) {
    const std::lock_guard lock(mutex_);
    requests_.push_back(request);
    return {.bytes = "{\"ok\":false,\"error\":\"unknown action\"}\n"};
  }

  Pipe stop_ = makePipe().value();
  mutable std::mutex mutex_;
  std::vector<std::string> requests_;
  std::unique_ptr<simulated::ListeningSocket> socket_;
  std::jthread thread_{[this] {
    simulated::ControlServer(*socket_,
                             {.closesEarly = [] { return false; },
                              .reply = [this](const std::string& request) { return answer(request); }})
        .serveUntil(stop_.reading.number());
  }};
};

struct AlertWindowStory : ShownDesktop {
  AlertWindowStory() { control({"scenario", "update-available"}); }

  std::string question() const { return windows("^Install the Ostrel Agent update"); }
  std::string failure() const { return windows("^Couldn't start the update"); }

  bool hasFocus(const std::string& window) const {
    return !window.empty() && xdotool({"getwindowfocus"}) == window;
  }

  /// Opens the panel by its icon and presses the second of its buttons.
  bool asksToInstall(const Process& process) {
    const auto openAndPress = [&] {
      if (!question().empty()) return;
      // A key may be lost to a panel that has just come.
      if (!windows("^Protected").empty()) xdotool({"key", "Escape"});
      click(process);
      if (becomesTrue([&] { return hasFocus(windows("^Protected")); }))
        xdotool({"key", "Tab", "Tab", "Return"});
    };
    return by(openAndPress, [&] { return hasFocus(question()); });
  }

  /// Width and height of a window that can be seen.
  std::string sizeOf(const std::string& window) const {
    const auto shell = xdotool({"getwindowgeometry", "--shell", window});
    const auto begin = shell.find("WIDTH=");
    return shell.substr(begin, shell.find("SCREEN=") - begin);
  }
};

TEST_F(AlertWindowStory, EscapeInstallsNoUpdateAndATooOldDaemonIsReported) {
  const OldDaemon daemon(place / "root");
  auto process = menuBar();
  ASSERT_TRUE(isRegistered(process));
  ASSERT_TRUE(becomesLabelled(process, "Ostrel Agent: protected"));
  ASSERT_TRUE(asksToInstall(process));
  EXPECT_TRUE(windows("^Protected").empty()) << "the panel has made room";
  EXPECT_TRUE(by([this] { xdotool({"key", "Escape"}); }, [this] { return question().empty(); }));
  ASSERT_TRUE(asksToInstall(process));
  EXPECT_EQ(daemon.updates(), 0);
  ASSERT_TRUE(by([this] { xdotool({"key", "Return"}); }, [this] { return !failure().empty(); }));
  EXPECT_EQ(daemon.updates(), 1);

  const auto file = place / "alert.png";
  EXPECT_EQ(run({PREVIEW, "--alert", "update-failed", "--png", file}, environment).status, 0);
  const QImage tooOld(QString::fromStdString(file));
  EXPECT_EQ(sizeOf(failure()),
            "WIDTH=" + std::to_string(tooOld.width()) + "\nHEIGHT=" + std::to_string(tooOld.height()) + "\n")
      << "the alert has the room of the sentence that the daemon is too old";
  process.signal(SIGTERM);
  EXPECT_EQ(process.end(), 128 + SIGTERM) << "an open alert holds up nothing";
  EXPECT_EQ(process.error(), "");
}

}  // namespace
}  // namespace ostrel
