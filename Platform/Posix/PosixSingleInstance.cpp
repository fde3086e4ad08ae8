#include "Platform/Posix/PosixSingleInstance.hpp"

#include <cerrno>
#include <utility>

#include "Platform/Posix/FileLock.hpp"
#include "Platform/Posix/PosixError.hpp"

namespace ostrel {

std::expected<SingleInstance::Claim, PlatformError> PosixSingleInstance::claim(
    std::chrono::milliseconds timeout) {
  auto lock = FileLock::take(lockPath_, timeout);
  if (lock) return std::make_shared<FileLock>(std::move(*lock));
  if (isPosixError(lock.error(), ETIMEDOUT)) return nullptr;
  return std::unexpected(std::move(lock.error()));
}

}  // namespace ostrel
