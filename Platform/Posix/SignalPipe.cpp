#include "Platform/Posix/SignalPipe.hpp"

#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace ostrel {

Pipe makeSignalPipe() {
  auto pipe = makePipe();
  if (!pipe) throw std::system_error(pipe.error().code, std::generic_category(), "signal pipe");
  return std::move(*pipe);
}

void wakeFromSignal(int writingEnd) {
  const int error = errno;
  const char wake = 0;
  if (::write(writingEnd, &wake, 1) < 0) errno = error;
}

}  // namespace ostrel
