#include "SimulatedEndpoint/Serve.hpp"

#include <chrono>
#include <csignal>
#include <cstdio>
#include <string>

#include "Platform/Posix/TerminationSignals.hpp"
#include "SimulatedEndpoint/ControlServer.hpp"
#include "SimulatedEndpoint/Daemon.hpp"
#include "SimulatedEndpoint/EndpointFiles.hpp"
#include "SimulatedEndpoint/Overrides.hpp"
#include "SimulatedEndpoint/ServiceLock.hpp"

namespace ostrel::simulated {

namespace {

int failed(const std::string& sentence) {
  std::fprintf(stderr, "simulated-endpoint: %s\n", sentence.c_str());
  return 1;
}

std::chrono::sys_seconds now() {
  return std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
}

}  // namespace

int serve(Files& files, const SimulatedState& state, const std::string& toolFolder) {
  (void)std::signal(SIGPIPE, SIG_IGN);
  const TerminationSignals signals;
  const auto lock = ServiceLock::take(state.root().realPath(endpointfiles::serviceLock));
  if (!lock) return failed(lock.error());
  auto installed = state.writeLaunchFile();
  if (installed) installed = state.linkTools(toolFolder);
  if (!installed) return failed(installed.error());
  const auto socket = ListeningSocket::at(state.root().realPath(endpointfiles::controlSocket));
  if (!socket) return failed(socket.error());
  std::printf("Serving at %s\n", endpointfiles::controlSocket);
  (void)std::fflush(stdout);
  Daemon daemon(files, state, now);
  const Overrides overrides(files, state.root());
  ControlServer server(**socket, {.closesEarly = [&] { return closesEarly(overrides.order("misbehave")); },
                                  .reply =
                                      [&](const std::string& request) {
                                        return misbehavingReply(overrides.order("misbehave"),
                                                                [&] { return daemon.answer(request); });
                                      }});
  server.serveUntil(signals.descriptor());
  return 0;
}

}  // namespace ostrel::simulated
