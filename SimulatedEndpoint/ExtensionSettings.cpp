#include "SimulatedEndpoint/ExtensionSettings.hpp"

#include "Platform/Posix/FileLock.hpp"

namespace ostrel::simulated {

ExtensionSettings::ExtensionSettings(Files& files, const HostRoot& root)
    : files_(files),
      path_(root.realPath(simulatedstate::systemExtension)),
      lockPath_(root.realPath(simulatedstate::lock)) {}

std::expected<SystemExtensionAction, std::string> ExtensionSettings::approve() const {
  return answer(Answer::approve);
}

std::expected<SystemExtensionAction, std::string> ExtensionSettings::deny() const {
  return answer(Answer::deny);
}

std::expected<void, std::string> ExtensionSettings::bundle(const std::string& version) const {
  const auto lock = FileLock::take(lockPath_);
  if (!lock) return std::unexpected(lock.error().description);
  auto state = read();
  state.bundledVersion = version;
  return write(state);
}

std::expected<SystemExtensionAction, std::string> ExtensionSettings::answer(Answer answer) const {
  if (!read().awaiting) return std::unexpected("nothing waits for approval");
  const auto lock = FileLock::take(lockPath_);
  if (!lock) return std::unexpected(lock.error().description);
  auto state = read();
  if (!state.awaiting) return std::unexpected("nothing waits for approval any more");
  const auto action = *state.awaiting;
  if (answer == Answer::approve) state = after(action, state);
  state.awaiting.reset();
  if (auto written = write(state); !written) return std::unexpected(written.error());
  return action;
}

SystemExtensionState ExtensionSettings::read() const {
  const auto bytes = files_.read(path_);
  if (!bytes) return {};
  return systemExtensionOfFile(*bytes).value_or(SystemExtensionState());
}

std::expected<void, std::string> ExtensionSettings::write(const SystemExtensionState& state) const {
  auto written = files_.makeFolders(path_.substr(0, path_.rfind('/')));
  if (written) written = files_.writeAtomically(path_, fileOfSystemExtension(state));
  if (!written) return std::unexpected("cannot write " + path_ + ": " + written.error().description);
  return {};
}

}  // namespace ostrel::simulated
