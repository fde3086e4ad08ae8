#pragma once

namespace ostrel {

/// Speed of the notification gates in readings per second of CPU; median of some runs.
struct GateFigures {
  double redReadings = 0;        ///< of a Mac whose protection turns on and off
  double containerReadings = 0;  ///< of three blocked runtimes, two of them enabled
};
GateFigures measureGates(int readings);

}  // namespace ostrel
