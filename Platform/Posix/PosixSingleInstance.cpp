#include "Platform/Posix/PosixSingleInstance.hpp"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <filesystem>
#include <system_error>
#include <thread>

#include "Platform/Posix/Descriptor.hpp"
#include "Platform/Posix/PosixError.hpp"

namespace ostrel {

namespace {

constexpr std::chrono::milliseconds timeBetweenTries(20);

/// Neither a pipe in the place of the file nor one that cannot be written is in the way.
Descriptor openLock(const std::string& path) {
  std::error_code error;
  std::filesystem::create_directories(std::filesystem::path(path).parent_path(), error);
  return Descriptor(::open(path.c_str(), O_RDONLY | O_CREAT | O_CLOEXEC | O_NONBLOCK, 0600));
}

}  // namespace

std::expected<SingleInstance::Claim, PlatformError> PosixSingleInstance::claim(
    std::chrono::milliseconds patience) {
  auto lock = openLock(lockPath_);
  if (!lock) return std::unexpected(posixError(errno));
  const auto deadline = std::chrono::steady_clock::now() + patience;
  while (::flock(lock.number(), LOCK_EX | LOCK_NB) != 0) {
    if (errno != EWOULDBLOCK && errno != EINTR) return std::unexpected(posixError(errno));
    if (std::chrono::steady_clock::now() >= deadline) return nullptr;
    std::this_thread::sleep_for(timeBetweenTries);
  }
  return std::make_shared<Descriptor>(std::move(lock));
}

}  // namespace ostrel
