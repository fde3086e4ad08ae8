#include "Benchmarks/DesktopBenchmark.hpp"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QEventLoop>
#include <QProcess>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <optional>
#include <stdexcept>
#include <utility>

#include "Benchmarks/BenchTable.hpp"
#include "Benchmarks/HostRootFolder.hpp"
#include "Benchmarks/Process.hpp"
#include "OstrelAgent/MenuBar/MenuBarController.hpp"
#include "Shells/Desktop/Shell/StatusItemMenu.hpp"
#include "Tests/Shells/Desktop/Shell/SignalRecorder.hpp"
#include "Tests/Shells/Desktop/Shell/TrayWatcher.hpp"

namespace ostrel {

namespace {

using SteadyClock = std::chrono::steady_clock;

/// Sleeps between events, so that the measured program has both cores.
template <class Condition>
void waitUntil(Condition condition) {
  QTimer deadline;
  deadline.setSingleShot(true);
  deadline.start(std::chrono::seconds(20));
  while (!condition()) {
    if (!deadline.isActive()) throw std::runtime_error("the agent does not answer");
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
}

void waitFor(std::chrono::milliseconds time) {
  QEventLoop loop;
  QTimer::singleShot(time, &loop, &QEventLoop::quit);
  loop.exec();
}

/// A tray and the programs that register with it.
class Tray {
 public:
  /// Milliseconds from the start of a program to its registration.
  double start(const std::vector<std::string>& command) {
    agent_.reset();
    watcher_.items.clear();
    const auto started = SteadyClock::now();
    agent_.emplace(command);
    waitUntil([this] { return !watcher_.items.isEmpty(); });
    return std::chrono::duration<double, std::milli>(SteadyClock::now() - started).count();
  }

  /// Toggles the panel, and waits until the agent has done so.
  void click() {
    auto call = QDBusMessage::createMethodCall(watcher_.items.last(), QStringLiteral("/StatusNotifierItem"),
                                               QStringLiteral("org.kde.StatusNotifierItem"),
                                               QStringLiteral("Activate"));
    bus_.call(call << 600 << 10);
    waitFor(std::chrono::milliseconds(100));
  }

  /// As from the item's menu, whose second entry it is.
  void openWindow() {
    auto call =
        QDBusMessage::createMethodCall(watcher_.items.last(), QLatin1String(StatusItemMenu::path),
                                       QStringLiteral("com.canonical.dbusmenu"), QStringLiteral("Event"));
    const QVariant nothing = QVariant::fromValue(QDBusVariant(0));
    bus_.call(call << 2 << QStringLiteral("clicked") << nothing << 0U);
    waitFor(std::chrono::milliseconds(200));
  }

  /// As the user does, by the Escape key. The window has gone before the key is let go.
  static void closeWindow() {
    const auto xdotool = [](const char* arguments) {
      const auto list = QString::fromLatin1(arguments).split(QLatin1Char(' '));
      if (QProcess::execute(QStringLiteral("xdotool"), list) != 0)
        throw std::runtime_error("the agent window does not show");
    };
    xdotool("search --onlyvisible --name ^Ostrel\\sAgent$ keydown --window %1 Escape");
    waitFor(std::chrono::milliseconds(50));
    xdotool("keyup Escape");
    waitFor(std::chrono::milliseconds(50));
  }

  const Process& agent() const { return *agent_; }
  qsizetype signalCount() const { return signals_.signalsTaken.size(); }

 private:
  QDBusConnection bus_ = QDBusConnection::sessionBus();
  TrayWatcher watcher_{bus_};
  SignalRecorder signals_{bus_, QStringLiteral("/StatusNotifierItem"),
                          QStringLiteral("org.kde.StatusNotifierItem")};
  std::optional<Process> agent_;
};

/// Of an agent whose panel has not been opened.
void measureWindow(Tray& tray, int openings, DesktopFigures& figures) {
  tray.start({OSTREL_AGENT, "menubar"});
  waitFor(std::chrono::milliseconds(500));
  std::uint64_t second = 0;
  for (int i = 0; i < openings; ++i) {
    tray.openWindow();
    figures.windowResidentKiB = tray.agent().memoryKiB("Rss");
    Tray::closeWindow();
    if (i == 1) second = tray.agent().memoryKiB("Rss");
  }
  figures.closedResidentKiB = tray.agent().memoryKiB("Rss");
  figures.windowGrowthKiB =
      static_cast<std::int64_t>(figures.closedResidentKiB) - static_cast<std::int64_t>(second);
}

}  // namespace

DesktopFigures measureDesktop(int starts, int openings) {
  const HostRootFolder hostRoot;
  Tray tray;
  DesktopFigures figures;
  std::vector<double> times;
  std::vector<double> bareTimes;
  for (int i = 0; i < starts; ++i) {
    bareTimes.push_back(tray.start({OSTREL_BARE_ITEM}));
    waitFor(std::chrono::milliseconds(300));
    times.push_back(tray.start({OSTREL_AGENT, "menubar"}));
    waitFor(std::chrono::milliseconds(300));
  }
  figures.startMilliseconds = median(std::move(times));
  figures.bareStartMilliseconds = median(std::move(bareTimes));

  waitFor(MenuBarController::refreshPeriod / 2);
  const auto signalsBefore = tray.signalCount();
  waitFor(MenuBarController::refreshPeriod * 3);
  figures.signalsOfRefreshes = static_cast<double>(tray.signalCount() - signalsBefore);
  figures.idleResidentKiB = tray.agent().memoryKiB("Rss");
  figures.idlePrivateDirtyKiB = tray.agent().memoryKiB("Private_Dirty");

  std::uint64_t second = 0;
  for (int i = 0; i < openings; ++i) {
    tray.click();
    tray.click();
    if (i == 1) second = tray.agent().memoryKiB("Rss");
  }
  figures.openedResidentKiB = tray.agent().memoryKiB("Rss");
  figures.growthKiB =
      static_cast<std::int64_t>(figures.openedResidentKiB) - static_cast<std::int64_t>(second);
  measureWindow(tray, openings, figures);
  return figures;
}

}  // namespace ostrel
