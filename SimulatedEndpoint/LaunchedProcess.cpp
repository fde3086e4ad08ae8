#include "SimulatedEndpoint/LaunchedProcess.hpp"

#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstring>
#include <fstream>
#include <iterator>
#include <sstream>
#include <thread>
#include <utility>

extern char** environ;  // NOLINT(readability-redundant-declaration)

namespace ostrel::simulated {

namespace {

using namespace std::chrono_literals;

constexpr auto endTimeout = 5s;

/// The fields of /proc behind the name of a process: state, parent and so on; empty when it has exited.
std::vector<std::string> facts(pid_t process) {
  std::ostringstream stat;
  stat << std::ifstream("/proc/" + std::to_string(process) + "/stat").rdbuf();
  const auto line = std::move(stat).str();
  const auto name = line.rfind(')');
  if (name == std::string::npos) return {};
  std::istringstream words(line.substr(name + 1));
  return {std::istream_iterator<std::string>(words), {}};
}

/// Empty when there is no such process, or only its remains.
std::string startOf(pid_t process) {
  constexpr std::size_t state = 0;
  constexpr std::size_t startTime = 19;
  const auto words = facts(process);
  if (words.size() <= startTime || words[state] == "Z" || words[state] == "X") return "";
  return words[startTime];
}

class SpawnSettings {
 public:
  explicit SpawnSettings(const std::string& logPath) {
    posix_spawnattr_init(&attributes_);
    sigset_t signals;
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&attributes_, &signals);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE, SIGCHLD}) sigaddset(&signals, signal);
    posix_spawnattr_setsigdefault(&attributes_, &signals);
    posix_spawnattr_setflags(&attributes_,
                             POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    posix_spawn_file_actions_init(&actions_);
    posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions_, STDOUT_FILENO, logPath.c_str(), O_WRONLY | O_CREAT | O_APPEND,
                                     0600);
    posix_spawn_file_actions_adddup2(&actions_, STDOUT_FILENO, STDERR_FILENO);
  }
  SpawnSettings(const SpawnSettings&) = delete;
  SpawnSettings& operator=(const SpawnSettings&) = delete;
  ~SpawnSettings() {
    posix_spawnattr_destroy(&attributes_);
    posix_spawn_file_actions_destroy(&actions_);
  }

  int spawn(pid_t& process, char* const* arguments) const {
    return ::posix_spawn(&process, arguments[0], &actions_, &attributes_, arguments, environ);
  }

 private:
  posix_spawnattr_t attributes_{};
  posix_spawn_file_actions_t actions_{};
};

}  // namespace

std::expected<LaunchedProcess, std::string> LaunchedProcess::start(const std::vector<std::string>& program,
                                                                   const std::string& logPath) {
  std::vector<char*> arguments;
  // The interface takes them as not const; it does not change them.
  for (const auto& argument : program) arguments.push_back(const_cast<char*>(argument.c_str()));
  arguments.push_back(nullptr);
  LaunchedProcess launched;
  const int error = SpawnSettings(logPath).spawn(launched.number, arguments.data());
  if (error != 0) return std::unexpected("cannot start " + program.front() + ": " + std::strerror(error));
  launched.started = startOf(launched.number);
  return launched;
}

LaunchedProcess LaunchedProcess::of(const Json& job) {
  LaunchedProcess launched;
  if (job.contains("process") && job["process"].is_number_integer()) launched.number = job["process"];
  if (job.contains("started") && job["started"].is_string()) launched.started = job["started"];
  return launched;
}

void LaunchedProcess::writeTo(Json& job) const {
  job["process"] = number;
  job["started"] = started;
}

bool LaunchedProcess::isRunning() const {
  return number > 1 && !started.empty() && startOf(number) == started;
}

void LaunchedProcess::end() const {
  for (const int signal : {SIGTERM, SIGKILL}) {
    if (isRunning()) ::kill(number, signal);
    const auto deadline = std::chrono::steady_clock::now() + endTimeout;
    while (isRunning() && std::chrono::steady_clock::now() < deadline) std::this_thread::sleep_for(10ms);
  }
}

}  // namespace ostrel::simulated
