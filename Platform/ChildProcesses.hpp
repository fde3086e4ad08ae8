#pragma once

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <expected>
#include <functional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/PlatformError.hpp"

namespace ostrel {

/// Where a stream of the child goes: to the agent's own, into the result, or nowhere.
enum class ChildStream { inherited, captured, discarded };

struct ChildCommand {
  std::string executable;  ///< absolute path; no search path, no shell
  std::vector<std::string> arguments;
  ChildStream output = ChildStream::inherited;
  ChildStream error = ChildStream::inherited;
  /// The child is not ended with the host; its run then fails by `isHostShuttingDown`. For a child whose
  /// streams are captured or discarded.
  bool outlivesProgram = false;
};

/// How a run ended: the exit status, or the number of the signal that ended it, and what was captured.
struct ChildResult {
  std::int32_t status = 0;
  std::string output;
  std::string error = {};  ///< the first 64 KiB; the rest is read and dropped

  bool operator==(const ChildResult&) const = default;
};

/// Requests, from any thread, that a run end: by TERM, or by KILL, after which it returns at once.
struct ChildStopTokens {
  std::stop_token terminate = {};
  std::stop_token kill = {};
};

/// True for the error of a run that was ended, or kept from starting, because the host shuts down. Its caller
/// then stops silently.
inline bool isHostShuttingDown(const PlatformError& error) {
  return error.domain == posixErrorDomain && error.code == ECANCELED;
}

/// Takes captured output piece by piece as it comes, on the thread of the run.
using ChildOutput = std::function<void(std::string_view)>;

/// Child processes (Process with pipes). A child whose output is captured or discarded reads an empty input
/// and is the head of a process group that is ended with it; one that inherits shares the terminal.
class ChildProcesses {
 public:
  virtual ~ChildProcesses() = default;

  /// Starts the child, reads its output to the end, waits for it and reaps it. Standard error is read until
  /// the child ends, since children of its own may keep that open. Blocks; any thread. Fails when the child
  /// cannot be started, or by `isHostShuttingDown`. Where `received` is given, the result has no output.
  [[nodiscard]] virtual std::expected<ChildResult, PlatformError> run(const ChildCommand& command,
                                                                      const ChildStopTokens& stopTokens = {},
                                                                      const ChildOutput& received = {}) = 0;

  /// Reaps the killed children that have ended by now; the number of those that have not. Any thread; does
  /// not wait.
  virtual std::size_t reapKilled() = 0;

  /// Starts the child in a session of its own, with an empty input and nothing captured; it lives on when the
  /// program ends. Does not wait for it; any thread.
  [[nodiscard]] virtual std::expected<void, PlatformError> start(const ChildCommand& command) = 0;
};

}  // namespace ostrel
