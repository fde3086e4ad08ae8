#include <cstdio>
#include <string>
#include <vector>

#include "Platform/Posix/PosixFiles.hpp"
#include "SimulatedEndpoint/LaunchJobs.hpp"

namespace {

using ostrel::simulated::LaunchJobs;

constexpr int usageStatus = 64;

int runCommand(LaunchJobs& jobs, const std::vector<std::string>& words) {
  const auto command = words.empty() ? std::string() : words.front();
  if (command == "bootstrap" && words.size() == 3) return jobs.bootstrap(words[1], words[2]);
  if (command == "bootout" && words.size() == 2) return jobs.bootout(words[1]);
  if (command == "kickstart" && words.size() == 3 && words[1] == "-k") return jobs.kickstart(words[2]);
  return usageStatus;
}

const char* sentence(int status) {
  switch (status) {
    case LaunchJobs::noSuchProcess:
      return "No such process";
    case LaunchJobs::inputOutputError:
      return "Input/output error";
    case LaunchJobs::noSuchService:
      return "Could not find service in domain";
    case LaunchJobs::unsupportedDomain:
      return "Domain does not support specified action";
    default:
      return "usage: launchctl bootstrap gui/UID PLIST | bootout gui/UID/LABEL | kickstart -k gui/UID/LABEL";
  }
}

}  // namespace

int main(int argc, char** argv) {
  using namespace ostrel;
  PosixFiles files([](std::string_view path) { return std::string(path); });
  const auto root = HostRoot::fromEnvironment("");
  LaunchJobs jobs(files, root);
  const int status = runCommand(jobs, {argv + (argc > 0 ? 1 : 0), argv + argc});
  if (status != LaunchJobs::done) std::fprintf(stderr, "launchctl: %d: %s\n", status, sentence(status));
  return status;
}
