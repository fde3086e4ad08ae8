// Prints the desktop's rows of the table of docs/PERFORMANCE.md; needs a display and a session bus of its
// own.

#include <QCoreApplication>
#include <algorithm>
#include <cstdio>
#include <exception>

#include "Benchmarks/BenchTable.hpp"
#include "Benchmarks/DesktopBenchmark.hpp"
#include "OstrelAgent/Containers/ContainerDetector.hpp"
#include "OstrelAgent/Status/StatusRead.hpp"
#include "Platform/Posix/PosixTimeFormat.hpp"

namespace ostrel {

namespace {

constexpr int starts = 11;
constexpr int openings = 50;
constexpr int firstOpenings = 11;
constexpr int timedOpenings = 21;

std::string mebibytes(double kibibytes) { return formatted("%.1f MiB", kibibytes / 1024); }

/// The contents that panel and window have for the report, at a fixed time.
struct Reported {
  Reported() {
    model.hasReading = true;
    model.panelMaxHeight = 760;
    model.snap = statusSnapshot({.helper = readHelper({0, readReport()}, nullptr)});
    containers.hasReading = true;
    containers.selected = "Podman";
    containers.reading = containerTrustReading({}, {});
  }

  PanelContent panel() const {
    return panelContent(model, now, times, {PanelAction::checkNow, PanelAction::quitStatusIcon});
  }
  AgentWindowContent window(AgentPage page) const {
    const auto actions = allPanelActions();
    return agentWindowContent(page, {model, containers, now, times, actions});
  }
  std::vector<AgentWindowContent> allPages() const {
    std::vector<AgentWindowContent> pages;
    for (int page = 0; page <= static_cast<int>(AgentPage::help); ++page) {
      pages.push_back(window(static_cast<AgentPage>(page)));
    }
    return pages;
  }

  PosixTimeFormat format{"en"};
  TimeTexts times{.clockTime = [this](Date date) { return format.clockTime(date); },
                  .shortDate = [this](Date date) { return format.shortDate(date); }};
  Date now = Date(std::chrono::sys_days(std::chrono::January / 2 / 2025)) + std::chrono::hours(10);
  StatusPanelModel model;
  ContainersPage containers;
};

void printDesktop() {
  // A separate application object, destroyed before the desktop creates its own.
  int count = 1;
  char name[] = "ostrel-desktop-bench";
  char* arguments[] = {name, nullptr};
  const QCoreApplication application(count, arguments);
  const auto desktop = measureDesktop(starts, openings);
  compare("exec to RegisterStatusNotifierItem, median of 11; reference: a program that only registers", "ms",
          desktop.startMilliseconds, desktop.bareStartMilliseconds, "30 ms");
  printRow("resident memory of the idle icon, panel never opened",
           mebibytes(static_cast<double>(desktop.idleResidentKiB)), "", "", "24 MiB");
  printRow("private dirty memory of the same", mebibytes(static_cast<double>(desktop.idlePrivateDirtyKiB)),
           "", "", "3.0 MiB");
  printRow("resident memory after opening and closing the panel 50 times",
           mebibytes(static_cast<double>(desktop.openedResidentKiB)), "", "", "48 MiB");
  printRow("growth since the second time", mebibytes(static_cast<double>(desktop.growthKiB)), "", "",
           "0.5 MiB");
  printRow("resident memory with the agent window open, panel never opened",
           mebibytes(static_cast<double>(desktop.windowResidentKiB)), "", "", "60 MiB");
  printRow("the same after opening and closing the window 50 times",
           mebibytes(static_cast<double>(desktop.closedResidentKiB)), "", "", "50 MiB");
  printRow("growth since the second time", mebibytes(static_cast<double>(desktop.windowGrowthKiB)), "", "",
           "0.5 MiB");
  printRow("D-Bus signals of three refreshes that change nothing",
           formatted("%.0f", desktop.signalsOfRefreshes), "", "", "0");
}

void printFirstOpening() {
  const Reported reported;
  const auto opening =
      measureFirstOpening(reported.panel(), reported.window(AgentPage::ecosystems), firstOpenings);
  compare(
      "click to the panel's first frame, first time, with loading the views, median of 11; reference: a "
      "window "
      "with one rectangle",
      "ms", opening.panelMilliseconds, opening.bareWindowMilliseconds, "60 ms");
  compare("\"Open Ostrel Agent\" to the agent window's first frame, likewise", "ms",
          opening.agentWindowMilliseconds, opening.bareWindowMilliseconds, "2.5");
}

void printOpening() {
  const auto opening = measureOpening(Reported().panel(), timedOpenings);
  printRow("click to the panel's first frame later, median of 21", formatted("%.1f ms", opening.milliseconds),
           "", "", "20 ms");
  printRow("frames of 100 updates that change nothing", std::to_string(opening.framesOfEqualUpdates), "", "",
           "0");
}

void printAgentWindow() {
  const auto window = measureAgentWindow(Reported().allPages(), timedOpenings);
  printRow("\"Open Ostrel Agent\" to the agent window's first frame later, median of 21",
           formatted("%.1f ms", window.opening.milliseconds), "", "", "40 ms");
  printRow("a page of it to the frame of the next, median of 21, the slowest page",
           formatted("%.1f ms", *std::ranges::max_element(window.switchMilliseconds)), "", "", "16 ms");
  printRow("the same, the median page", formatted("%.1f ms", median(window.switchMilliseconds)), "", "",
           "16 ms");
  printRow("frames of 100 updates of it that change nothing",
           std::to_string(window.opening.framesOfEqualUpdates), "", "", "0");
}

}  // namespace

}  // namespace ostrel

int main() {
  try {
    ostrel::printFirstOpening();
    ostrel::printDesktop();
    ostrel::printOpening();
    ostrel::printAgentWindow();
  } catch (const std::exception& error) {
    std::fprintf(stderr, "ostrel-desktop-bench: %s\n", error.what());
    return 1;
  }
}
