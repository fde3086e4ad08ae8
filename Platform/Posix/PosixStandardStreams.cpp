#include "Platform/Posix/PosixStandardStreams.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "Platform/Posix/BoundedWrite.hpp"

namespace ostrel {

PosixStandardStreams::PosixStandardStreams() {
  for (const int number : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    // A new descriptor gets the lowest free number, which is this one.
    if (::fcntl(number, F_GETFD) < 0 && errno == EBADF) (void)::open("/dev/null", O_RDWR);
  }
  (void)std::signal(SIGPIPE, SIG_IGN);
}

void PosixStandardStreams::writeOutput(std::string_view text) { writeBounded(STDOUT_FILENO, text); }

void PosixStandardStreams::writeError(std::string_view text) { writeBounded(STDERR_FILENO, text); }

}  // namespace ostrel
