#include "Tests/EndToEnd/Process.hpp"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <utility>

#include "Tests/Fakes/TemporaryFolder.hpp"

namespace ostrel {

namespace {

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (auto& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

std::vector<std::string> lines(const Process::Environment& environment) {
  std::vector<std::string> lines;
  for (const auto* name : {"PATH", "ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS", "TSAN_OPTIONS"}) {
    if (const char* value = std::getenv(name)) lines.push_back(std::string(name) + "=" + value);
  }
  for (const auto& [name, value] : environment) lines.push_back(name + "=" + value);
  return lines;
}

int millisecondsUntil(std::chrono::steady_clock::time_point deadline) {
  const auto left = deadline - std::chrono::steady_clock::now();
  return std::max(0, static_cast<int>(std::chrono::ceil<std::chrono::milliseconds>(left).count()));
}

void close(int& descriptor) {
  if (descriptor >= 0) ::close(std::exchange(descriptor, -1));
}

}  // namespace

Process::Process(const std::vector<std::string>& command, const Environment& environment,
                 std::string_view input) {
  (void)std::signal(SIGPIPE, SIG_IGN);
  std::array<std::array<int, 2>, 3> pipes{};
  for (auto& pipe : pipes) EXPECT_EQ(::pipe2(pipe.data(), O_CLOEXEC), 0);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  for (int stream = 0; stream < 3; ++stream) {
    const int childEnd = pipes[static_cast<std::size_t>(stream)][stream == 0 ? 0 : 1];
    posix_spawn_file_actions_adddup2(&actions, childEnd, stream);
  }
  auto arguments = command;
  auto variables = lines(environment);
  const int failure = ::posix_spawnp(&process_, command.front().c_str(), &actions, nullptr,
                                     pointersTo(arguments).data(), pointersTo(variables).data());
  EXPECT_EQ(failure, 0) << command.front();
  if (failure != 0) process_ = -1;
  posix_spawn_file_actions_destroy(&actions);
  for (auto& pipe : pipes) ::close(pipe[&pipe == &pipes[0] ? 0 : 1]);
  input_ = pipes[0][1];
  streams_[0] = pipes[1][0];
  streams_[1] = pipes[2][0];
  write(input);
}

Process::~Process() {
  if (process_ > 0) {
    signal(SIGKILL);
    ::waitpid(process_, nullptr, 0);
  }
  closeInput();
  for (auto& stream : streams_) close(stream);
}

void Process::write(std::string_view text) {
  while (!text.empty()) {
    const auto count = ::write(input_, text.data(), text.size());
    if (count < 0 && errno != EINTR) return;
    text.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
  }
}

void Process::closeInput() { close(input_); }

/// Reads the next bytes of either stream; false when both have ended or the deadline has come.
bool Process::read(Deadline deadline) {
  std::array<pollfd, 2> watched = {{{streams_[0], POLLIN, 0}, {streams_[1], POLLIN, 0}}};
  if (streams_[0] < 0 && streams_[1] < 0) return false;
  if (::poll(watched.data(), watched.size(), millisecondsUntil(deadline)) <= 0) return false;
  for (std::size_t i = 0; i < watched.size(); ++i) {
    if (watched[i].fd < 0 || watched[i].revents == 0) continue;
    std::array<char, 65536> bytes;
    const auto count = ::read(watched[i].fd, bytes.data(), bytes.size());
    if (count > 0) (i == 0 ? output_ : error_).append(bytes.data(), static_cast<std::size_t>(count));
    if (count <= 0) close(streams_[i]);
  }
  return true;
}

void Process::awaitOutput(std::string_view text, std::chrono::milliseconds timeout) {
  const auto deadline = std::chrono::steady_clock::now() + timeout;
  while (output_.find(text, found_) == std::string::npos) {
    if (streams_[0] >= 0 && read(deadline)) continue;
    ADD_FAILURE() << "no \"" << text << "\" in: " << output_.substr(found_) << "\nerror: " << error_;
    return;
  }
  found_ = output_.find(text, found_) + text.size();
}

void Process::signal(int number) const {
  if (process_ > 0) ::kill(process_, number);  // to any other number would go to many processes
}

int Process::end(std::chrono::milliseconds timeout) {
  const auto deadline = std::chrono::steady_clock::now() + timeout;
  while (read(deadline)) {
  }
  if (process_ < 0) return 127;
  int status = 0;
  pid_t ended = 0;
  while ((ended = ::waitpid(process_, &status, WNOHANG)) == 0 && millisecondsUntil(deadline) > 0) {
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  if (ended == 0) {
    ADD_FAILURE() << "the program does not end: " << output_ << error_;
    signal(SIGKILL);
    ::waitpid(process_, &status, 0);
  }
  process_ = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

Ran run(const std::vector<std::string>& command, const Process::Environment& environment,
        std::string_view input) {
  Process process(command, environment, input);
  process.closeInput();
  const int status = process.end();
  return {status, process.output(), process.error()};
}

std::vector<pid_t> processesWith(std::string_view environmentText) {
  std::vector<pid_t> found;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator("/proc", error)) {
    const auto name = entry.path().filename().string();
    if (name.find_first_not_of("0123456789") != std::string::npos) continue;
    if (contentOf(entry.path() / "environ").contains(environmentText)) found.push_back(std::stoi(name));
  }
  return found;
}

Ran bootOutMenuBarAgent(const std::string& hostRoot, const Process::Environment& environment) {
  const auto job = "gui/" + std::to_string(::getuid()) + "/tech.brenn.ostrel-agent.menubar";
  return run({hostRoot + "/bin/launchctl", "bootout", job}, environment);
}

}  // namespace ostrel
