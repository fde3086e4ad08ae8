#include <sys/ptrace.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <ctime>
#include <vector>

#include "Platform/Posix/PosixFiles.hpp"
#include "SimulatedEndpoint/EndpointFiles.hpp"
#include "SimulatedEndpoint/HelperAnswers.hpp"
#include "SimulatedEndpoint/ServiceLock.hpp"
#include "SimulatedEndpoint/SimulatedState.hpp"

namespace {

using namespace ostrel;
using namespace ostrel::simulated;

constexpr const char* usage =
    "usage: ostrel-agent-endpoint status --json\n"
    "       ostrel-agent-endpoint diagnostics --network-extension TEXT [--send]\n"
    "       ostrel-agent-endpoint uninstall --untrust-ca --removal-kind=app_deactivate\n";

void rest(std::chrono::milliseconds duration) {
  const auto whole = std::chrono::duration_cast<std::chrono::seconds>(duration);
  timespec left = {whole.count(), static_cast<long>((duration - whole).count()) * 1'000'000};
  while (nanosleep(&left, &left) != 0 && errno == EINTR) {
  }
}

/// Waits for as long as the process that started this one could still be waiting for the answer.
void hang(pid_t starter) {
  while (getppid() == starter && starter != 1) rest(std::chrono::milliseconds(500));
}

/// Has a child trace this process until its starter ends. A process that is traced cannot be reaped by its
/// parent, like one that waits for a device.
void becomeUnreapable(pid_t starter) {
  const pid_t self = getpid();
  if (fork() != 0) return;
  setsid();
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) close(stream);
  ptrace(PTRACE_SEIZE, self, nullptr, nullptr);
  while (kill(starter, 0) == 0) rest(std::chrono::milliseconds(100));
  _exit(0);
}

bool print(std::string_view text) {
  while (!text.empty()) {
    const auto written = write(STDOUT_FILENO, text.data(), text.size());
    if (written < 0 && errno != EINTR) return false;
    if (written > 0) text.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

int failed(const std::string& sentence) {
  std::fprintf(stderr, "ostrel-agent-endpoint: %s\n", sentence.c_str());
  return 1;
}

[[nodiscard]] std::expected<std::string, std::string> uninstallAnswer(const SimulatedState& state) {
  endService(state.root().realPath(endpointfiles::serviceLock));
  const auto removed = state.uninstall();
  if (!removed) return std::unexpected(removed.error());
  std::string text =
      "==> Stopping the background service\n"
      "==> Removing the device certificate and its trust\n"
      "==> Removing the enrollment of this Mac\n";
  for (const auto& file : *removed) text += "==> Removing " + file + "\n";
  return text + "The endpoint is removed.\n";
}

[[nodiscard]] std::expected<std::string, std::string> answer(const HelperRequest& request,
                                                             const SimulatedState& state,
                                                             const Scenario& scenario,
                                                             const HelperBehaviour& behaviour) {
  const auto now = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
  switch (request.command) {
    case HelperCommand::status:
      return statusAnswer(scenario, behaviour, now);
    case HelperCommand::copyDiagnostics:
      return diagnosticsAnswer(scenario, request.networkExtension, now);
    case HelperCommand::sendDiagnostics:
      return sendAnswer(behaviour.sending, now);
    case HelperCommand::uninstall:
      return uninstallAnswer(state);
  }
  return std::unexpected("unknown command");
}

/// The exit status, unless the behaviour asks for an end by a signal.
int end(const HelperBehaviour& behaviour) {
  if (behaviour.livesAfterClosingOutput) {
    close(STDOUT_FILENO);
    rest(*behaviour.livesAfterClosingOutput);
  }
  if (behaviour.signal == 0) return behaviour.exitStatus;
  const rlimit noCore = {0, 0};
  setrlimit(RLIMIT_CORE, &noCore);
  std::signal(behaviour.signal, SIG_DFL);
  std::raise(behaviour.signal);
  return 128 + behaviour.signal;
}

}  // namespace

int main(int argc, char** argv) {
  const auto starter = getppid();
  const std::vector<std::string_view> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
  const auto request = helperRequest(arguments);
  if (!request) {
    std::fputs(usage, stderr);
    return 2;
  }
  PosixFiles files([](std::string_view path) { return std::string(path); });
  const SimulatedState state(files, HostRoot::fromEnvironment(""));
  const auto scenario = state.observed();
  if (!scenario) return failed(scenario.error());
  const auto behaviour = helperBehaviour(scenario->helper(), helperCommandWord(request->command));
  if (behaviour.ignoresTermination) std::signal(SIGTERM, SIG_IGN);
  rest(behaviour.delay);
  if (behaviour.hangs) {
    if (behaviour.isUnreapable) becomeUnreapable(starter);
    hang(starter);
    return 1;
  }
  auto text = answer(*request, state, *scenario, behaviour);
  if (!text) return failed(text.error());
  if (!print(distorted(*std::move(text), behaviour))) return failed("cannot write to the standard output");
  return end(behaviour);
}
