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
  }

  /// Milliseconds until the panel's first frame.
  double open(const PanelContent& content) {
    return timeToFrame([&] { desktop_->screens().openPanel(content); });
  }

  /// Milliseconds until the first frame of a window with one rectangle.
  double openBareWindow() {
    return timeToFrame([] {
      const auto open = QLibrary::resolve(QStringLiteral(OSTREL_BARE_WINDOW), "openBareWindow");
      if (open == nullptr) throw std::runtime_error("the bare window cannot be loaded");
      open();
    });
  }

  int framesWhile(const std::function<void(Screens&)>& work) {
    settle();
    const int before = counter_.count();
    work(desktop_->screens());
    settle();
    return counter_.count() - before;
  }

  void close() {
    desktop_->screens().closePanel();
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

}  // namespace

FirstOpeningFigures measureFirstOpening(const PanelContent& content, int processes) {
  std::vector<double> panels;
  std::vector<double> bareWindows;
  for (int i = 0; i < processes; ++i) {
    panels.push_back(measureElsewhere([&](OwnDesktop& desktop) { return desktop.open(content); }));
    bareWindows.push_back(measureElsewhere([](OwnDesktop& desktop) { return desktop.openBareWindow(); }));
  }
  return {median(std::move(panels)), median(std::move(bareWindows))};
}

OpeningFigures measureOpening(const PanelContent& content, int openings) {
  OwnDesktop desktop;
  OpeningFigures figures;
  desktop.open(content);
  figures.framesOfEqualUpdates = desktop.framesWhile([&](Screens& screens) {
    for (int i = 0; i < 100; ++i) screens.updatePanel(content);
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

}  // namespace ostrel
