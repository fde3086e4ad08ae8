#include "OstrelAgent/Daemon/DeviceCATrust.hpp"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <future>

#include "Platform/Posix/PosixChildProcesses.hpp"
#include "Platform/Posix/PosixFiles.hpp"
#include "Platform/Posix/PosixUnixSockets.hpp"
#include "Platform/SimulatedMac/HostRoot.hpp"
#include "Tests/EndToEnd/Process.hpp"
#include "Tests/Fakes/TemporaryFolder.hpp"

namespace ostrel {
namespace {

namespace fs = std::filesystem;
using Outcome = DeviceCATrust::Outcome;

/// The trust over the stand-ins of daemon and security tool, with the real services between them.
struct DeviceCATrustOverTheSimulatedMac : testing::Test {
  DeviceCATrustOverTheSimulatedMac() {
    ::setenv("OSTREL_HOST_ROOT", hostRoot.path().c_str(), 1);  // for the tool
    control({"scenario", "trust-pending"});
  }
  ~DeviceCATrustOverTheSimulatedMac() override { ::unsetenv("OSTREL_HOST_ROOT"); }

  void control(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), CONTROL);
    const auto ran = run(arguments, environment);
    EXPECT_EQ(ran.status, 0) << ran.error;
  }

  Outcome outcome() {
    const DeviceCATrust trust(ControlSocket(sockets, files), files, children, account);
    auto outcome = trust.ensureTrusted();
    const bool isLeft = fs::exists(temporaryFolder) && !fs::is_empty(temporaryFolder);
    EXPECT_FALSE(isLeft) << "a certificate is left";
    return outcome;
  }

  PathMap realPath() {
    return [this](std::string_view path) { return hostRoot.realPath(path); };
  }

  TemporaryFolder place;
  HostRoot hostRoot{place / "root", "/Users/robin", "/tmp", "/Applications/OstrelAgent.app"};
  const std::string temporaryFolder = hostRoot.realPath("/tmp");
  UserAccount account{hostRoot.home(), hostRoot.temporaryFolder(), 501};
  PosixFiles files{realPath()};
  PosixChildProcesses children{realPath()};
  PosixUnixSockets sockets{realPath()};
  Process::Environment environment{
      {"HOME", "/Users/robin"}, {"TMPDIR", "/tmp"}, {"OSTREL_HOST_ROOT", hostRoot.path()}};
};

TEST_F(DeviceCATrustOverTheSimulatedMac, EndsAsThePersonDecides) {
  EXPECT_EQ(outcome().message,
            "Couldn't confirm the device certificate is trusted: Ostrel Agent's background service isn't "
            "installed on this Mac yet. Install the Ostrel Agent package, then reopen this app.");
  Process daemon({CONTROL, "serve"}, environment);
  daemon.awaitOutput("Serving");
  control({"trust", "cancel"});
  EXPECT_EQ(outcome(), Outcome{Outcome::Case::cancelled});
  control({"trust", "refuse"});
  EXPECT_EQ(outcome().message, "macOS refused to trust the device certificate (security exited 1).");
  control({"trust", "accept"});
  EXPECT_EQ(outcome(), Outcome{Outcome::Case::trusted});
  EXPECT_EQ(outcome(), Outcome{Outcome::Case::trusted}) << "asked once more, it is trusted already";
  control({"stop"});
}

TEST_F(DeviceCATrustOverTheSimulatedMac, WaitsForTheToolAloneAndNotBeyondTheHost) {
  Process daemon({CONTROL, "serve"}, environment);
  daemon.awaitOutput("Serving");
  const std::string ready = place / "ready";
  const auto replaceTool = [&](const std::string& script) {
    const auto tool = hostRoot.realPath("/usr/bin/security");
    fs::remove(tool);
    fs::remove(ready);
    place.write(fs::relative(tool, place.path()).string(), "#!/bin/sh\n" + script);
    fs::permissions(tool, fs::perms::owner_all);
  };
  replaceTool("sleep 20 & echo $! > " + ready + "; exit 3");
  EXPECT_EQ(outcome().message, "macOS refused to trust the device certificate (security exited 3).");
  EXPECT_EQ(::kill(std::stoi(place.read("ready")), SIGKILL), 0) << "the tool's child was waited for";
  for (const auto* endless : {"exec cat /dev/zero >&2", "sleep 100"}) {
    replaceTool(": > " + ready + "; " + endless);
    PosixChildProcesses ending(realPath());
    const DeviceCATrust trust(ControlSocket(sockets, files), files, ending, account);
    auto ended = std::async(std::launch::async, [&trust] { return trust.ensureTrusted(); });
    EXPECT_TRUE(becomesTrue([&] { return fs::exists(ready); }));
    ending.endAll();
    EXPECT_EQ(ended.wait_for(std::chrono::seconds(10)), std::future_status::ready) << endless;
    EXPECT_EQ(ended.get().kind, Outcome::Case::failed);
    EXPECT_TRUE(fs::is_empty(temporaryFolder)) << "a certificate is left";
  }
  control({"stop"});
}

TEST_F(DeviceCATrustOverTheSimulatedMac, SaysWhatIsMissing) {
  Process daemon({CONTROL, "serve"}, environment);
  daemon.awaitOutput("Serving");
  fs::remove(hostRoot.realPath("/usr/bin/security"));
  EXPECT_EQ(outcome().message,
            "Couldn't ask macOS to trust the device certificate: No such file or directory");
  fs::remove_all(temporaryFolder);
  EXPECT_EQ(outcome().message, "Couldn't stage the device certificate for macOS: No such file or directory");
  control({"stop"});
}

}  // namespace
}  // namespace ostrel
