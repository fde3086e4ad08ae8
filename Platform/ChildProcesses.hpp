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

/// Destination of a child's stream: the agent's own stream, the result, or /dev/null.
enum class ChildStream { inherited, captured, discarded };

struct ChildCommand {
  std::string executable;  ///< absolute path; no search path, no shell
  std::vector<std::string> arguments;
  ChildStream output = ChildStream::inherited;
  ChildStream error = ChildStream::inherited;
  /// The child survives the host's shutdown, and its run fails by `isHostShuttingDown`. Only for children
  /// whose streams are captured or discarded.
  bool outlivesProgram = false;
};

/// How a run ended: the exit status, or the number of the signal that ended it, and what was captured.
struct ChildResult {
  std::int32_t status = 0;
  std::string output;
  std::string error = {};  ///< the first 64 KiB; the rest is read and dropped

  bool operator==(const ChildResult&) const = default;
};

/// Ends a run, from any thread: by TERM, or by KILL, after which the run returns at once.
struct ChildStopTokens {
  std::stop_token terminate = {};
  std::stop_token kill = {};
};

/// True for the error of a run that the host's shutdown ended or prevented. The caller then stops silently.
inline bool isHostShuttingDown(const PlatformError& error) {
  return error.domain == posixErrorDomain && error.code == ECANCELED;
}

/// Receives captured output in pieces, on the thread of the run.
using ChildOutput = std::function<void(std::string_view)>;

/// Child processes (Process with pipes). A child whose output is captured or discarded reads an empty input
/// and leads a process group that ends with it; one that inherits the streams shares the terminal.
class ChildProcesses {
 public:
  virtual ~ChildProcesses() = default;

  /// Starts the child, reads its output to the end, waits for it and reaps it. Standard error is read until
  /// the child exits, since grandchildren may keep it open. Blocks; any thread. Fails when the child cannot
  /// be started, or by `isHostShuttingDown`. With `received` the result has no output.
  [[nodiscard]] virtual std::expected<ChildResult, PlatformError> run(const ChildCommand& command,
                                                                      const ChildStopTokens& stopTokens = {},
                                                                      const ChildOutput& received = {}) = 0;

  /// Reaps killed children that have exited; returns the number of those that have not. Any thread; does not
  /// wait.
  virtual std::size_t reapKilled() = 0;

  /// Starts the child in its own session, with empty input and discarded output; it outlives the program.
  /// Does not wait for it; any thread.
  [[nodiscard]] virtual std::expected<void, PlatformError> start(const ChildCommand& command) = 0;
};

}  // namespace ostrel
