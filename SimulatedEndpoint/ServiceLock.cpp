#include "SimulatedEndpoint/ServiceLock.hpp"

#include <fcntl.h>
#include <sys/types.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <optional>
#include <system_error>
#include <thread>

namespace ostrel::simulated {

namespace {

struct flock wholeFile() {
  struct flock lock {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  return lock;
}

/// The kernel knows who holds a record lock, so that the answer cannot be out of date.
std::optional<pid_t> holder(const Descriptor& file) {
  auto lock = wholeFile();
  if (!file || ::fcntl(file.number(), F_GETLK, &lock) != 0 || lock.l_type == F_UNLCK) return std::nullopt;
  return lock.l_pid;
}

}  // namespace

std::expected<ServiceLock, std::string> ServiceLock::take(const std::string& path) {
  std::error_code error;
  std::filesystem::create_directories(std::filesystem::path(path).parent_path(), error);
  Descriptor file(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
  if (!file) return std::unexpected("cannot open " + path + ": " + std::strerror(errno));
  auto lock = wholeFile();
  if (::fcntl(file.number(), F_SETLK, &lock) == 0) return ServiceLock(std::move(file));
  const auto other = holder(file);
  return std::unexpected("another daemon serves already" +
                         (other ? ", process " + std::to_string(*other) : std::string()));
}

void endService(const std::string& lockPath) {
  const Descriptor file(::open(lockPath.c_str(), O_RDWR | O_CLOEXEC));
  const auto service = holder(file);
  if (!service || *service <= 0) return;
  ::kill(*service, SIGTERM);
  for (int look = 0; look < 300 && holder(file) == service; ++look) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
}

}  // namespace ostrel::simulated
