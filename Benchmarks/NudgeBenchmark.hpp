#pragma once

namespace ostrel {

/// The cost of a burst of network changes.
struct NudgeFigures {
  double milliseconds = 0;  ///< of CPU for all changes, the median of some bursts
  int checkIns = 0;         ///< caused by one burst
};
NudgeFigures measureNudges(int pathChanges);

}  // namespace ostrel
