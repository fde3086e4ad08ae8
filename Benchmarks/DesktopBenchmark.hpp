#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "OstrelAgent/Panel/PanelContent.hpp"
#include "OstrelAgent/Window/AgentWindowContent.hpp"

namespace ostrel {

/// The agent's cost on a desktop. Needs a display and a session bus without a tray.
struct DesktopFigures {
  double startMilliseconds = 0;      ///< from exec to the registration at the tray, the median of all
  double bareStartMilliseconds = 0;  ///< the same of a program that only registers
  std::uint64_t idleResidentKiB = 0;
  std::uint64_t idlePrivateDirtyKiB = 0;
  double signalsOfRefreshes = 0;        ///< D-Bus signals while nothing changes
  std::uint64_t openedResidentKiB = 0;  ///< after the panel has been opened and closed often
  std::int64_t growthKiB = 0;           ///< since it was closed for the second time
  std::uint64_t windowResidentKiB = 0;  ///< with the agent window open
  std::uint64_t closedResidentKiB = 0;  ///< after the agent window has been opened and closed often
  std::int64_t windowGrowthKiB = 0;     ///< since it was closed for the second time
};
DesktopFigures measureDesktop(int starts, int openings);

/// A process's first window, including loading the drawing libraries: milliseconds to the first frame,
/// medians over that many processes. Call it before the toolkit is used.
struct FirstOpeningFigures {
  double panelMilliseconds = 0;  ///< from the click
  double agentWindowMilliseconds = 0;
  double bareWindowMilliseconds = 0;  ///< a window with one rectangle
};
FirstOpeningFigures measureFirstOpening(const PanelContent& content, const AgentWindowContent& window,
                                        int processes);

/// The same in this process, once the views are loaded.
struct OpeningFigures {
  double milliseconds = 0;       ///< the median
  int framesOfEqualUpdates = 0;  ///< of a hundred updates that change nothing
};
OpeningFigures measureOpening(const PanelContent& content, int openings);

/// The same of the agent window with these pages, of which the first is opened.
struct WindowFigures {
  OpeningFigures opening;
  std::vector<double> switchMilliseconds;  ///< to the frame of each page, from the page before; medians
};
WindowFigures measureAgentWindow(const std::vector<AgentWindowContent>& pages, int openings);

}  // namespace ostrel
