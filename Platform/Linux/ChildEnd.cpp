#include <sys/syscall.h>
#include <unistd.h>

#include "Platform/Posix/ChildEnd.hpp"

namespace ostrel {

Descriptor openPidfd(pid_t child) {
  // <sys/pidfd.h> of glibc 2.36 declares it without C linkage.
  return Descriptor(static_cast<int>(::syscall(SYS_pidfd_open, child, 0)));
}

}  // namespace ostrel
