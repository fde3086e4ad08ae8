#include <cstdio>
#include <string>
#include <vector>

#include "Platform/Posix/PosixFiles.hpp"
#include "SimulatedEndpoint/DeviceCertificate.hpp"
#include "SimulatedEndpoint/EndpointFiles.hpp"
#include "SimulatedEndpoint/EndpointReport.hpp"
#include "SimulatedEndpoint/Overrides.hpp"
#include "SimulatedEndpoint/SimulatedState.hpp"

namespace {

using namespace ostrel;
using namespace ostrel::simulated;

int failed(int status, const std::string& sentence) {
  std::fprintf(stderr, "%s\n", sentence.c_str());
  return status;
}

/// Only the device certificate matters to the endpoint; another one is trusted without effect.
int trust(const Files& files, const SimulatedState& state, const std::string& pem) {
  const auto device = files.read(state.root().realPath(endpointfiles::certificate));
  if (!device || *device != pem) return 0;
  const auto changed = state.changeReport(reportAfterTrust);
  return changed ? 0 : failed(1, changed.error());
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> words(argv + (argc > 0 ? 1 : 0), argv + argc);
  if (words.size() != 5 || words[0] != "add-trusted-cert" || words[1] != "-d" || words[2] != "-r" ||
      words[3] != "trustRoot") {
    return failed(2, "usage: security add-trusted-cert -d -r trustRoot FILE");
  }
  PosixFiles files([](std::string_view path) { return std::string(path); });
  const SimulatedState state(files, HostRoot::fromEnvironment(""));
  const auto pem = files.read(state.root().realPath(words[4]));
  if (!pem) return failed(1, "Error reading file " + words[4]);
  if (!isCertificate(*pem)) return failed(1, "SecCertificateCreateFromData: Unknown format in import.");
  const auto order = Overrides(files, state.root()).order("trust");
  if (order == "cancel") {
    return failed(1, "SecTrustSettingsSetTrustSettings: The authorization was canceled by the user.");
  }
  if (order == "refuse") {
    return failed(1, "SecTrustSettingsSetTrustSettings: The authorization was denied.");
  }
  return trust(files, state, *pem);
}
