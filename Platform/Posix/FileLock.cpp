#include "Platform/Posix/FileLock.hpp"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>
#include <thread>

namespace ostrel {

namespace {

constexpr std::chrono::milliseconds timeBetweenTries(2);

std::unexpected<PlatformError> failure(const std::string& path, int number) {
  const auto reason =
      number == ETIMEDOUT ? "another program keeps it" : std::generic_category().message(number);
  return std::unexpected(PlatformError{posixErrorDomain, number, "cannot lock " + path + ": " + reason});
}

}  // namespace

std::expected<FileLock, PlatformError> FileLock::take(const std::string& path,
                                                      std::chrono::milliseconds timeout) {
  std::error_code error;
  std::filesystem::create_directories(std::filesystem::path(path).parent_path(), error);
  // Read-only and non-blocking, so that neither a pipe at the path nor a read-only file prevents opening it.
  FileLock lock(::open(path.c_str(), O_RDONLY | O_CREAT | O_CLOEXEC | O_NONBLOCK, 0600));
  if (lock.descriptor_ < 0) return failure(path, errno);
  const auto deadline = std::chrono::steady_clock::now() + timeout;
  while (::flock(lock.descriptor_, LOCK_EX | LOCK_NB) != 0) {
    if (errno != EWOULDBLOCK && errno != EINTR) return failure(path, errno);
    if (std::chrono::steady_clock::now() >= deadline) return failure(path, ETIMEDOUT);
    std::this_thread::sleep_for(timeBetweenTries);
  }
  return lock;
}

FileLock::~FileLock() {
  if (descriptor_ >= 0) ::close(descriptor_);
}

}  // namespace ostrel
