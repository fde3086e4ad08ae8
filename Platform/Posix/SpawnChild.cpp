#include "Platform/Posix/SpawnChild.hpp"

#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>

#include <csignal>
#include <vector>

#include "Platform/Posix/PosixError.hpp"

// Some systems declare it in <unistd.h>, others leave it to the program.
extern char** environ;  // NOLINT(readability-redundant-declaration)

namespace ostrel {

namespace {

constexpr const char* devNull = "/dev/null";

/// How the child is attached to the program: by the terminal, by a process group that ends with it, or
/// detached.
enum class ChildAttachment { terminal, group, none };

constexpr int flagOf(ChildAttachment tie) {
  switch (tie) {
    case ChildAttachment::terminal:
      return 0;
    case ChildAttachment::group:
      return POSIX_SPAWN_SETPGROUP;
    case ChildAttachment::none:
      return POSIX_SPAWN_SETSID;
  }
  return 0;
}

class SpawnAttributes {
 public:
  explicit SpawnAttributes(ChildAttachment tie) {
    posix_spawnattr_init(&value_);
    sigset_t signals;
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&value_, &signals);
    sigfillset(&signals);
    sigdelset(&signals, SIGKILL);
    sigdelset(&signals, SIGSTOP);
    posix_spawnattr_setsigdefault(&value_, &signals);
    posix_spawnattr_setpgroup(&value_, 0);
    const int flags = POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | flagOf(tie);
    posix_spawnattr_setflags(&value_, static_cast<short>(flags));
  }
  SpawnAttributes(const SpawnAttributes&) = delete;
  SpawnAttributes& operator=(const SpawnAttributes&) = delete;
  ~SpawnAttributes() { posix_spawnattr_destroy(&value_); }

  const posix_spawnattr_t* get() const { return &value_; }

 private:
  posix_spawnattr_t value_{};
};

class SpawnStreams {
 public:
  SpawnStreams(const ChildCommand& command, CaptureDescriptors captured, ChildAttachment tie) {
    posix_spawn_file_actions_init(&value_);
    if (tie != ChildAttachment::terminal) open(STDIN_FILENO, O_RDONLY);
    redirect(STDOUT_FILENO, command.output, captured.output);
    redirect(STDERR_FILENO, command.error, captured.error);
  }
  SpawnStreams(const SpawnStreams&) = delete;
  SpawnStreams& operator=(const SpawnStreams&) = delete;
  ~SpawnStreams() { posix_spawn_file_actions_destroy(&value_); }

  const posix_spawn_file_actions_t* get() const { return &value_; }

 private:
  void redirect(int number, ChildStream to, int captured) {
    if (to == ChildStream::discarded) open(number, O_WRONLY);
    if (to == ChildStream::captured) posix_spawn_file_actions_adddup2(&value_, captured, number);
  }

  void open(int number, int mode) { posix_spawn_file_actions_addopen(&value_, number, devNull, mode, 0); }

  posix_spawn_file_actions_t value_{};
};

std::vector<char*> argumentList(const ChildCommand& command) {
  // posix_spawn() takes non-const arguments but does not change them.
  std::vector<char*> list = {const_cast<char*>(command.executable.c_str())};
  for (const auto& argument : command.arguments) list.push_back(const_cast<char*>(argument.c_str()));
  list.push_back(nullptr);
  return list;
}

[[nodiscard]] std::expected<pid_t, PlatformError> spawn(const std::string& realPath,
                                                        const ChildCommand& command,
                                                        CaptureDescriptors captured, ChildAttachment tie) {
  const SpawnAttributes attributes(tie);
  const SpawnStreams streams(command, captured, tie);
  const auto arguments = argumentList(command);
  pid_t child = 0;
  const int failure =
      ::posix_spawn(&child, realPath.c_str(), streams.get(), attributes.get(), arguments.data(), environ);
  if (failure != 0) return std::unexpected(posixError(failure));
  return child;
}

}  // namespace

std::expected<pid_t, PlatformError> spawnChild(const std::string& realPath, const ChildCommand& command,
                                               CaptureDescriptors captured) {
  return spawn(realPath, command, captured,
               command.output == ChildStream::inherited ? ChildAttachment::terminal : ChildAttachment::group);
}

std::expected<pid_t, PlatformError> spawnDetachedChild(const std::string& realPath,
                                                       const ChildCommand& command) {
  return spawn(realPath, command, {}, ChildAttachment::none);
}

}  // namespace ostrel
