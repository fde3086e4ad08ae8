#include "Platform/SimulatedMac/StateLock.hpp"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

namespace ostrel {

StateLock::StateLock(const std::string& path) {
  std::error_code error;
  std::filesystem::create_directories(std::filesystem::path(path).parent_path(), error);
  descriptor_ = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  while (descriptor_ >= 0 && ::flock(descriptor_, LOCK_EX) != 0 && errno == EINTR) {
  }
}

StateLock::~StateLock() {
  if (descriptor_ >= 0) ::close(descriptor_);
}

}  // namespace ostrel
