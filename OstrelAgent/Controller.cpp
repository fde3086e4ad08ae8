#include "OstrelAgent/Controller.hpp"

#include <utility>

namespace ostrel {

Controller::Controller(const Bundle& bundle, const Files& files, ChildProcesses& childProcesses,
                       StandardStreams& streams)
    : bundle_(&bundle), files_(&files), childProcesses_(&childProcesses), streams_(&streams) {}

std::int32_t Controller::runHelper(const std::vector<std::string>& arguments) const {
  return run(arguments, ChildStream::inherited, {}).status;
}

Controller::HelperOutput Controller::runHelperCapturingStdout(const std::vector<std::string>& arguments,
                                                              const ChildEnding& ending) const {
  return run(arguments, ChildStream::captured, ending);
}

Controller::HelperOutput Controller::run(const std::vector<std::string>& arguments, ChildStream output,
                                         const ChildEnding& ending) const {
  const auto path = bundle_->path() + "/Contents/Helpers/ostrel-agent-endpoint";
  if (!files_->isExecutableFile(path)) {
    streams_->writeError("embedded ostrel-agent-endpoint not found at " + path + "\n");
    return {helperNotFound, ""};
  }
  auto result = childProcesses_->run({path, arguments, output, ChildStream::inherited}, ending);
  if (!result) {
    streams_->writeError("failed to run helper: " + result.error().description + "\n");
    return {helperNotStarted, ""};
  }
  return {result->status, std::move(result->output)};
}

}  // namespace ostrel
