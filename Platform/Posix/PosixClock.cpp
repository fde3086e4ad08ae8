#include "Platform/Posix/PosixClock.hpp"

namespace ostrel {

Date PosixClock::now() const {
  return std::chrono::floor<std::chrono::milliseconds>(std::chrono::system_clock::now());
}

}  // namespace ostrel
