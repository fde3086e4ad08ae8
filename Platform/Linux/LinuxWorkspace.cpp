#include "Platform/Linux/LinuxWorkspace.hpp"

#include <unistd.h>

#include <filesystem>
#include <string_view>
#include <system_error>

#include "Platform/Posix/FrontSignal.hpp"

namespace ostrel {

namespace {

/// The suffix of /proc/PID/exe when the executable was replaced or removed.
constexpr std::string_view replaced = " (deleted)";

}  // namespace

std::int64_t LinuxWorkspace::processIdentifier() const { return ::getpid(); }

bool LinuxWorkspace::isRunning(std::int64_t processIdentifier) const {
  if (processIdentifier <= 0 || processIdentifier == this->processIdentifier()) return false;
  std::error_code error;
  auto executable =
      std::filesystem::read_symlink("/proc/" + std::to_string(processIdentifier) + "/exe", error).string();
  if (error) return false;
  if (executable.ends_with(replaced)) executable.resize(executable.size() - replaced.size());
  return executable == executablePath_;
}

bool LinuxWorkspace::bringToFront(std::int64_t processIdentifier) {
  return isRunning(processIdentifier) && FrontSignal::send(static_cast<pid_t>(processIdentifier));
}

}  // namespace ostrel
