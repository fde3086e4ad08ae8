#include "OstrelAgent/Daemon/HelperRunner.hpp"

#include <utility>

namespace ostrel {

HelperRunner::HelperRunner(const Bundle& bundle, const Files& files, ChildProcesses& childProcesses,
                           StandardStreams& streams)
    : bundle_(&bundle), files_(&files), childProcesses_(&childProcesses), streams_(&streams) {}

std::string HelperRunner::helperPath() const {
  return bundle_->path() + "/Contents/Helpers/ostrel-agent-endpoint";
}

std::int32_t HelperRunner::runHelper(const std::vector<std::string>& arguments) const {
  return run(arguments, ChildStream::inherited, {}).status;
}

HelperRunner::HelperOutput HelperRunner::runHelperCapturingStdout(const std::vector<std::string>& arguments,
                                                                  const ChildStopTokens& ending) const {
  return run(arguments, ChildStream::captured, ending);
}

HelperRunner::HelperOutput HelperRunner::run(const std::vector<std::string>& arguments, ChildStream output,
                                             const ChildStopTokens& ending) const {
  const auto path = helperPath();
  auto result = childProcesses_->run({path, arguments, output, ChildStream::inherited}, ending);
  if (result) return {result->status, std::move(result->output)};
  if (isHostShuttingDown(result.error())) return {helperNotStarted, ""};
  // Checked only after a failure: the helper runs every few seconds and is nearly always there.
  if (!files_->isExecutableFile(path)) {
    streams_->writeError("embedded ostrel-agent-endpoint not found at " + path + "\n");
    return {helperNotFound, ""};
  }
  streams_->writeError("failed to run helper: " + result.error().description + "\n");
  return {helperNotStarted, ""};
}

}  // namespace ostrel
