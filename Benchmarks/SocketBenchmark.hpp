#pragma once

namespace ostrel {

/// Microseconds from the start of a request of 1 KB to the end of its answer of the same size, the medians:
/// through the control socket, and by bare system calls. One server answers both, turn by turn.
struct SocketFigures {
  double controlSocketMicroseconds = 0;
  double bareMicroseconds = 0;
};
SocketFigures measureSocket(int exchanges);

}  // namespace ostrel
