#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Platform/Bundle.hpp"
#include "Platform/ChildProcesses.hpp"
#include "Platform/Files.hpp"
#include "Platform/StandardStreams.hpp"

namespace ostrel {

/// Runs the endpoint helper that ships inside the bundle. Calls block until the helper has exited or is
/// killed by its stop tokens; a copy may be used on another thread.
class HelperRunner {
 public:
  /// The runner's own exit statuses; the helper's pass through.
  static constexpr std::int32_t helperNotFound = 127;
  static constexpr std::int32_t helperNotStarted = 126;

  struct HelperOutput {
    std::int32_t status = 0;
    std::string standardOutput;

    bool operator==(const HelperOutput&) const = default;
  };

  HelperRunner(const Bundle& bundle, const Files& files, ChildProcesses& childProcesses,
               StandardStreams& streams);

  /// Absolute path of the helper, which may be missing.
  std::string helperPath() const;

  /// Runs the helper on the program's own standard streams; returns its exit status.
  std::int32_t runHelper(const std::vector<std::string>& arguments) const;

  /// Runs the helper; returns its standard output and exit status.
  HelperOutput runHelperCapturingStdout(const std::vector<std::string>& arguments,
                                        const ChildStopTokens& ending = {}) const;

 private:
  HelperOutput run(const std::vector<std::string>& arguments, ChildStream output,
                   const ChildStopTokens& ending) const;

  const Bundle* bundle_;
  const Files* files_;
  ChildProcesses* childProcesses_;
  StandardStreams* streams_;
};

}  // namespace ostrel
