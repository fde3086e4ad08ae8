#include "SimulatedEndpoint/Applications.hpp"

#include <utility>

#include "Platform/Posix/FileLock.hpp"

namespace ostrel::simulated {

namespace {

void stopAll(ApplicationsState& state, const std::string& identifier) {
  std::erase_if(state.running, [&identifier](const RunningApplication& each) {
    return each.bundleIdentifier == identifier;
  });
}

}  // namespace

Applications::Applications(Files& files, const HostRoot& root)
    : files_(files),
      path_(root.realPath(simulatedstate::applications)),
      lockPath_(root.realPath(simulatedstate::lock)) {}

Applications::Done Applications::install(const std::string& identifier) const {
  return change([&](ApplicationsState& state) { state.installed.insert(identifier); });
}

Applications::Done Applications::remove(const std::string& identifier) const {
  return change([&](ApplicationsState& state) {
    state.installed.erase(identifier);
    stopAll(state, identifier);
  });
}

Applications::Done Applications::start(const std::string& identifier, Date launched) const {
  return change([&](ApplicationsState& state) { state.running.push_back({identifier, launched}); });
}

Applications::Done Applications::stop(const std::string& identifier) const {
  return change([&](ApplicationsState& state) { stopAll(state, identifier); });
}

Applications::Done Applications::startProcess(const std::string& name) const {
  return change([&](ApplicationsState& state) { state.processes.push_back(name); });
}

Applications::Done Applications::stopProcess(const std::string& name) const {
  return change([&](ApplicationsState& state) { std::erase(state.processes, name); });
}

Applications::Done Applications::replace(ApplicationsState state) const {
  return change([&](ApplicationsState& before) { before = std::move(state); });
}

Applications::Done Applications::change(const std::function<void(ApplicationsState&)>& change) const {
  const auto lock = FileLock::take(lockPath_);
  if (!lock) return std::unexpected(lock.error().description);
  const auto bytes = files_.read(path_);
  auto state = bytes ? applicationsOfFile(*bytes) : ApplicationsState();
  change(state);
  auto written = files_.makeFolders(path_.substr(0, path_.rfind('/')));
  if (written) written = files_.writeAtomically(path_, fileOfApplications(state));
  if (!written) return std::unexpected("cannot write " + path_ + ": " + written.error().description);
  return {};
}

}  // namespace ostrel::simulated
