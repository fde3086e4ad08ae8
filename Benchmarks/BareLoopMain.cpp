// The minimal cost of a status poll: starts the helper, reads its output, reaps it, parses it, reads two
// files. bare-loop MILLISECONDS HELPER FILE FILE

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <string>
#include <thread>

namespace {

std::string readAll(int descriptor) {
  std::string bytes;
  char buffer[16384];
  for (ssize_t count = 0; (count = ::read(descriptor, buffer, sizeof buffer)) > 0;) {
    bytes.append(buffer, static_cast<std::size_t>(count));
  }
  ::close(descriptor);
  return bytes;
}

std::string runHelper(char* helper) {
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC) != 0) std::exit(1);
  posix_spawn_file_actions_t actions;
  ::posix_spawn_file_actions_init(&actions);
  ::posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
  std::string status = "status";
  std::string json = "--json";
  char* arguments[] = {helper, status.data(), json.data(), nullptr};
  pid_t pid = -1;
  if (::posix_spawn(&pid, helper, &actions, nullptr, arguments, environ) != 0) std::exit(1);
  ::posix_spawn_file_actions_destroy(&actions);
  ::close(ends[1]);
  auto output = readAll(ends[0]);
  ::waitpid(pid, nullptr, 0);
  return output;
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 5) return 2;
  const std::chrono::milliseconds period(std::stoi(arguments[1]));
  while (true) {
    const auto report = nlohmann::json::parse(runHelper(arguments[2]));
    const auto proxies = nlohmann::json::parse(readAll(::open(arguments[3], O_RDONLY | O_CLOEXEC)));
    const auto filter = nlohmann::json::parse(readAll(::open(arguments[4], O_RDONLY | O_CLOEXEC)));
    if (report.empty() || proxies.empty() || filter.empty()) return 1;
    std::this_thread::sleep_for(period);
  }
}
