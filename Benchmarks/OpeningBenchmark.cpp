#include <sys/wait.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QGuiApplication>
#include <QLibrary>
#include <QWindow>
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <stdexcept>
#include <utility>

#include "Benchmarks/BenchTable.hpp"
#include "Benchmarks/DesktopBenchmark.hpp"
#include "Benchmarks/FrameCounter.hpp"
#include "Hosts/DesktopPlugIns.hpp"
#include "OstrelAgent/Window/AgentWindowModel.hpp"
#include "Platform/Linux/LinuxBundle.hpp"
#include "Platform/Posix/PosixFiles.hpp"
#include "Platform/Posix/PosixLog.hpp"

namespace ostrel {

namespace {

using SteadyClock = std::chrono::steady_clock;

/// The desktop of the agent's bundle, in this process.
class OwnDesktop {
 public:
  OwnDesktop() {
    if (::pipe(never_.data()) != 0) throw std::runtime_error("no pipe");
    auto services = desktopServices(bundle_, log_);
    services.queueDescriptor = never_[0];
    services.signalDescriptor = never_[0];
    const auto plugIn = loadShellPlugIn(bundle_);
    if (!plugIn) throw std::runtime_error(plugIn.error());
    auto desktop = (*plugIn)->makeDesktop(std::move(services));
    if (!desktop) throw std::runtime_error(desktop.error());
    desktop_ = std::move(*desktop);
    desktop_->agentWindow().onEvents({.pageChosen = {},
                                      .pressed = {},
                                      .pageActionPressed = {},
                                      .runtimeSelected = {},
                                      .snippetChosen = {},
                                      .copyPressed = {},
                                      .notifySwitched = {},
                                      .allNotifySwitched = {},
                                      .activated = [] {},
                                      .resized = [](const WindowSize&) {},
                                      .closed = [] {}});
  }

  /// Milliseconds until the panel's first frame.
  double open(const PanelContent& content) {
    return timeToFrame([&] { desktop_->screens().openPanel(content); });
  }

  double open(const AgentWindowContent& content) {
    return timeToFrame([&] { desktop_->agentWindow().open(content, AgentWindowModel::firstSize); });
  }

  /// Milliseconds until the frame of a change that is seen.
  double update(const AgentWindowContent& content) {
    return timeToFrame([&] { desktop_->agentWindow().update(content); });
  }

  /// Milliseconds until the first frame of a window with one rectangle.
  double openBareWindow() {
    return timeToFrame([] {
      const auto open = QLibrary::resolve(QStringLiteral(OSTREL_BARE_WINDOW), "openBareWindow");
      if (open == nullptr) throw std::runtime_error("the bare window cannot be loaded");
      open();
    });
  }

  int framesWhile(const std::function<void(Desktop&)>& work) {
    settle();
    const int before = counter_.count();
    work(*desktop_);
    settle();
    return counter_.count() - before;
  }

  void close() {
    desktop_->screens().closePanel();
    desktop_->agentWindow().close();
    settle();
  }

 private:
  double timeToFrame(const std::function<void()>& open) {
    const auto start = SteadyClock::now();
    open();
    counter_.watch(QGuiApplication::topLevelWindows());
    const int before = counter_.count();
    const QDeadlineTimer deadline(10'000);
    while (counter_.count() == before && !deadline.hasExpired())
      QCoreApplication::processEvents(QEventLoop::AllEvents);
    if (deadline.hasExpired()) throw std::runtime_error("the window draws no frame");
    return std::chrono::duration<double, std::milli>(counter_.lastFrame() - start).count();
  }

  static void settle() {
    const QDeadlineTimer deadline(400);
    while (!deadline.hasExpired()) QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
  }

  std::array<int, 2> never_ = {-1, -1};
  PosixFiles files_{[](std::string_view path) { return std::string(path); }};
  LinuxBundle bundle_{files_, {}, OSTREL_AGENT};
  PosixLog log_;
  FrameCounter counter_;
  std::unique_ptr<Desktop> desktop_;
};

/// Measures a desktop in a separate process.
double measureElsewhere(const std::function<double(OwnDesktop&)>& open) {
  std::array<int, 2> pipe{};
  if (::pipe(pipe.data()) != 0) throw std::runtime_error("no pipe");
  const auto child = ::fork();
  if (child == 0) {
    OwnDesktop desktop;
    const double milliseconds = open(desktop);
    const bool isSent = ::write(pipe[1], &milliseconds, sizeof milliseconds) == sizeof milliseconds;
    std::_Exit(isSent ? 0 : 1);
  }
  ::close(pipe[1]);
  double milliseconds = 0;
  const bool isReceived = ::read(pipe[0], &milliseconds, sizeof milliseconds) == sizeof milliseconds;
  ::close(pipe[0]);
  if (child > 0) ::waitpid(child, nullptr, 0);
  if (!isReceived) throw std::runtime_error("the window does not open");
  return milliseconds;
}

template <class Content>
OpeningFigures openingFigures(OwnDesktop& desktop, const Content& content, int openings,
                              const std::function<void(Desktop&)>& update) {
  OpeningFigures figures;
  desktop.open(content);
  figures.framesOfEqualUpdates = desktop.framesWhile([&](Desktop& own) {
    for (int i = 0; i < 100; ++i) update(own);
  });
  desktop.close();
  std::vector<double> times;
  for (int i = 0; i < openings; ++i) {
    times.push_back(desktop.open(content));
    desktop.close();
  }
  figures.milliseconds = median(std::move(times));
  return figures;
}

}  // namespace

FirstOpeningFigures measureFirstOpening(const PanelContent& content, const AgentWindowContent& window,
                                        int processes) {
  std::vector<double> panels;
  std::vector<double> windows;
  std::vector<double> bareWindows;
  for (int i = 0; i < processes; ++i) {
    panels.push_back(measureElsewhere([&](OwnDesktop& desktop) { return desktop.open(content); }));
    windows.push_back(measureElsewhere([&](OwnDesktop& desktop) { return desktop.open(window); }));
    bareWindows.push_back(measureElsewhere([](OwnDesktop& desktop) { return desktop.openBareWindow(); }));
  }
  return {median(std::move(panels)), median(std::move(windows)), median(std::move(bareWindows))};
}

OpeningFigures measureOpening(const PanelContent& content, int openings) {
  OwnDesktop desktop;
  return openingFigures(desktop, content, openings,
                        [&](Desktop& own) { own.screens().updatePanel(content); });
}

WindowFigures measureAgentWindow(const std::vector<AgentWindowContent>& pages, int openings) {
  OwnDesktop desktop;
  WindowFigures figures;
  figures.opening = openingFigures(desktop, pages.front(), openings,
                                   [&](Desktop& own) { own.agentWindow().update(pages.front()); });
  desktop.open(pages.front());
  std::vector<std::vector<double>> times(pages.size());
  for (int round = 0; round < openings; ++round) {
    for (std::size_t shown = 0; shown < pages.size(); ++shown) {
      const auto next = (shown + 1) % pages.size();
      desktop.framesWhile([](Desktop&) {});
      times[next].push_back(desktop.update(pages[next]));
    }
  }
  for (auto& page : times) figures.switchMilliseconds.push_back(median(std::move(page)));
  return figures;
}

}  // namespace ostrel
