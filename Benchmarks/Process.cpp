#include "Benchmarks/Process.hpp"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <utility>

#include "Benchmarks/BenchTable.hpp"

namespace ostrel {

namespace {

pid_t spawn(const std::vector<std::string>& command) {
  std::vector<char*> arguments;
  for (const auto& argument : command) arguments.push_back(const_cast<char*>(argument.c_str()));
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  ::posix_spawn_file_actions_init(&actions);
  ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  ::posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  pid_t pid = -1;
  const int error =
      ::posix_spawn(&pid, command.front().c_str(), &actions, nullptr, arguments.data(), environ);
  ::posix_spawn_file_actions_destroy(&actions);
  if (error != 0) throw std::runtime_error(command.front() + " cannot be started");
  return pid;
}

/// The numbers after every "name:" of a status file.
std::uint64_t statusNumbers(const std::filesystem::path& file, const std::vector<std::string>& names) {
  std::ifstream lines(file);
  std::uint64_t sum = 0;
  for (std::string line; std::getline(lines, line);) {
    const auto colon = line.find(':');
    if (std::ranges::find(names, line.substr(0, colon)) != names.end())
      sum += std::stoull(line.substr(colon + 1));
  }
  return sum;
}

std::vector<std::filesystem::path> threads(pid_t pid) {
  std::vector<std::filesystem::path> folders;
  for (const auto& entry : std::filesystem::directory_iterator("/proc/" + std::to_string(pid) + "/task")) {
    folders.push_back(entry.path());
  }
  return folders;
}

}  // namespace

Process::Process(const std::vector<std::string>& command) : pid_(spawn(command)) {}

Process::~Process() {
  ::kill(pid_, SIGTERM);
  ::waitpid(pid_, nullptr, 0);
}

std::chrono::nanoseconds Process::cpuTime() const {
  std::chrono::nanoseconds sum{0};
  for (const auto& thread : threads(pid_)) {
    std::ifstream file(thread / "schedstat");
    std::int64_t running = 0;
    if (file >> running) sum += std::chrono::nanoseconds(running);
  }
  return sum;
}

std::uint64_t Process::contextSwitches() const {
  std::uint64_t sum = 0;
  for (const auto& thread : threads(pid_)) {
    sum += statusNumbers(thread / "status", {"voluntary_ctxt_switches", "nonvoluntary_ctxt_switches"});
  }
  return sum;
}

std::uint64_t Process::residentKiB() const {
  return statusNumbers("/proc/" + std::to_string(pid_) + "/status", {"VmRSS"});
}

std::uint64_t Process::memoryKiB(const std::string& name) const {
  return statusNumbers("/proc/" + std::to_string(pid_) + "/smaps_rollup", {name});
}

double medianRunMicroseconds(const std::vector<std::string>& command, int rounds) {
  std::vector<double> times;
  for (int i = 0; i < rounds; ++i) {
    const auto start = std::chrono::steady_clock::now();
    ::waitpid(spawn(command), nullptr, 0);
    times.push_back(
        std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count());
  }
  return median(std::move(times));
}

double medianRunCpuMilliseconds(const std::vector<std::string>& command, int rounds) {
  const auto milliseconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) * 1000 + static_cast<double>(time.tv_usec) / 1000;
  };
  std::vector<double> times;
  for (int i = 0; i < rounds; ++i) {
    int status = 0;
    rusage usage{};
    ::wait4(spawn(command), &status, 0, &usage);
    if (status != 0) throw std::runtime_error(command.front() + " failed");
    times.push_back(milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime));
  }
  return median(std::move(times));
}

}  // namespace ostrel
