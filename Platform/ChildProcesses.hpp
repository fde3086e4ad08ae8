#pragma once

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
};

/// How a run ended: the exit status, or the number of the signal that ended it, and what was captured.
struct ChildResult {
  std::int32_t status = 0;
  std::string output;
  std::string error = {};  ///< the first 64 KiB; the rest is read and dropped

  bool operator==(const ChildResult&) const = default;
};

/// Requests, from any thread, that a run end: politely (TERM), or at once (KILL, nothing more is read).
struct ChildEnding {
  std::stop_token terminate;
  std::stop_token kill;
};

/// Takes captured output piece by piece as it comes, on the thread of the run.
using ChildOutput = std::function<void(std::string_view)>;

/// Child processes (Process with pipes). A child whose output is captured or discarded reads an empty input
/// and is the head of a process group that is ended with it; one that inherits shares the terminal.
class ChildProcesses {
 public:
  virtual ~ChildProcesses() = default;

  /// Starts the child, reads what is captured to the end, waits for it and reaps it. Blocks; any thread.
  /// Fails when the child cannot be started. Where `received` is given, the result has no output.
  virtual std::expected<ChildResult, PlatformError> run(const ChildCommand& command,
                                                        const ChildEnding& ending = {},
                                                        const ChildOutput& received = {}) = 0;
};

}  // namespace ostrel
