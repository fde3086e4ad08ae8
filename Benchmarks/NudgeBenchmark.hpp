#pragma once

namespace ostrel {

/// What a network costs that changes over and over.
struct NudgeFigures {
  double milliseconds = 0;  ///< of CPU for all changes, the median of some bursts
  int checkIns = 0;         ///< that one burst leads to
};
NudgeFigures measureNudges(int pathChanges);

}  // namespace ostrel
