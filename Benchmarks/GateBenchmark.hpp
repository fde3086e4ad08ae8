#pragma once

namespace ostrel {

/// How fast the gates of the notifications decide, in readings a second of CPU, the median of some runs.
struct GateFigures {
  double redReadings = 0;        ///< of a Mac whose protection comes and goes
  double containerReadings = 0;  ///< of three blocked runtimes, two of them to be told about
};
GateFigures measureGates(int readings);

}  // namespace ostrel
