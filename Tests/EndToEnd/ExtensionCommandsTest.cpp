#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>

#include "Platform/SimulatedMac/HostRoot.hpp"
#include "Tests/EndToEnd/Mac.hpp"

namespace ostrel {
namespace {

using namespace std::chrono_literals;

constexpr const char* records = "root/Users/robin/Library/Application Support/ostrel-agent-endpoint/";
constexpr const char* launchFile = "/Library/LaunchDaemons/tech.brenn.ostrel-agent-endpoint.plist";
constexpr const char* jobFile = "root/Users/robin/Library/LaunchAgents/tech.brenn.ostrel-agent.menubar.plist";

const std::string activating = "==> activating the System Extension…\n";
const std::string activationApproval =
    "approval required → open System Settings ▸ General ▸ Login Items & Extensions (older macOS: Privacy & "
    "Security) and Allow the Ostrel Guard system extension. Leave this running: the moment you approve, "
    "setup "
    "finishes on its own — no need to re-run activate.\n";
const std::string activated = "system extension activate: result=0\n";
const std::string locked =
    "egress lock enabled — reaching a captured registry any way other than through Ostrel Guard is now "
    "denied.\n";
const std::string atNextLogin = "menu bar:    LaunchAgent written; the status UI starts at next login\n";
const std::string atOnce = "menu bar:    status UI running (now and at every login)\n";
const std::string flows =
    "transparent proxy enabled — npm registry traffic now flows through Ostrel Guard.\n";
const std::string reactivating = "==> re-activating the System Extension (post-upgrade)…\n";
const std::string reactivated = "system extension reactivate: result=0\n" + locked +
                                "System Extension re-activated — Ostrel Guard is now on the new version.\n";
const std::string deactivating = "==> deactivating the System Extension…\n";
const std::string removalApproval =
    "approval required → macOS is asking you to approve REMOVING the Ostrel Agent system extension. Open "
    "System Settings ▸ General ▸ Login Items & Extensions (older macOS: Privacy & Security) and allow the "
    "removal. Leave this running: the uninstall continues as soon as you approve.\n";
const std::string deactivated = "system extension deactivate: result=0\n";
const std::string helperRemoval =
    "==> Stopping the background service\n"
    "==> Removing the device certificate and its trust\n"
    "==> Removing the enrollment of this Mac\n";

void expectRan(const Ran& ran, int status, const std::string& output, const std::string& error) {
  EXPECT_EQ(ran.status, status);
  EXPECT_EQ(ran.output, output);
  EXPECT_EQ(ran.error, error);
}

TEST(ExtensionCommands, AnInstallationRunsFromActivationToRemoval) {
  Mac mac;
  mac.environment["DISPLAY"] = ":7";
  mac.control({"scenario", "fresh-install"});
  mac.control({"install"});
  expectRan(mac.runApproved("activate"), 0,
            activating + activationApproval + activated + locked + atOnce + flows, "");
  EXPECT_EQ(mac.verdict(), "protected");
  EXPECT_EQ(mac.json(std::string(records) + "applied-capture.json")["captured_hosts"].size(), 19U);
  const auto first = mac.control({"agent"});
  EXPECT_TRUE(becomesTrue([&] {
    const auto log = "root/Users/robin/Library/Logs/tech.brenn.ostrel-agent.menubar.log";
    return mac.place.read(log).contains("Ostrel Agent: protected\n");
  }));

  mac.control({"upgrade", "4.13.0"});
  EXPECT_TRUE(becomesTrue([&] {
    return mac.place.read(std::string(records) + "reactivated-version") == "4.13.0";
  })) << "the agent drives it";
  EXPECT_FALSE(mac.report().contains("reactivate_version"));
  EXPECT_EQ(mac.json(std::string(records) + "egress-lock-configuration.json")["enabled"], true);
  expectRan(mac.run("reactivate"), 0, reactivating + reactivated, "");
  EXPECT_EQ(mac.verdict(), "protected");
  EXPECT_EQ(mac.control({"agent"}), first) << "a re-activation leaves the agent alone";

  expectRan(mac.run("activate"), 0, activating + activated + locked + atOnce + flows, "");
  EXPECT_NE(mac.control({"agent"}), first) << "an activation restarts it";

  mac.control({"approval", "always"});
  const auto removed = mac.runApproved("deactivate");
  expectRan(removed, 0,
            deactivating + removalApproval + deactivated + helperRemoval +
                "==> Removing /Library/LaunchDaemons/tech.brenn.ostrel-agent-endpoint.plist\n"
                "The endpoint is removed.\n"
                "transparent proxy + daemon removed — see the helper output above for any manual step still "
                "owed\n",
            "");
  EXPECT_EQ(mac.verdict(), "not_protected");
  EXPECT_EQ(mac.state(simulatedstate::transparentProxies), Json::array());
  for (const auto& file : {std::string(jobFile), "root" + std::string(launchFile)}) {
    EXPECT_FALSE(fs::exists(mac.place / file)) << file;
  }
}

TEST(ExtensionCommands, ARequestEndsWithTheAnswerOfTheSystem) {
  struct Row {
    const char* scenario;
    std::vector<std::string> setting;
    const char* command;
    int status;
    std::string output;
    std::string error;
  };
  const std::string activation = activating + activated + locked + atNextLogin + flows;
  const Row rows[] = {
      {"protected", {"callbacks", "twice"}, "activate", 0, activation, ""},
      {"protected",
       {"result", "after-reboot"},
       "activate --extension-only",
       0,
       activating + "system extension activate: result=1\n" + locked + atNextLogin + flows,
       ""},
      {"protected",
       {"fail-filter-saves", "1", "NEFilterErrorDomain", "1", "asleep"},
       "activate",
       0,
       activating + activated +
           "egress lock NOT enabled (asleep) — direct egress to captured registries stays possible; capture "
           "itself is unaffected\n" +
           atNextLogin + flows,
       ""},
      {"extension-too-old",
       {"approval", "always"},
       "reactivate",
       1,
       reactivating,
       "re-activation needs approval that has not propagated yet — deferring (sysext stays on the old "
       "version)\n"},
      {"protected",
       {"approval", "new"},
       "deactivate --extension-only",
       0,
       deactivating + deactivated +
           "system extension + proxy configuration removed — the root uninstall that dispatched this owns "
           "the "
           "rest\n",
       ""},
      {"protected",
       {"set", "helper", R"({"only": "uninstall", "exit": 4})"},
       "deactivate",
       1,
       deactivating + deactivated + helperRemoval +
           "==> Removing /Library/LaunchDaemons/tech.brenn.ostrel-agent-endpoint.plist\n"
           "The endpoint is removed.\n"
           "proxy removed; ostrel-agent-endpoint uninstall exited 4\n",
       ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.setting.front() + " " + row.command);
    const Mac mac;
    mac.control({"scenario", row.scenario});
    mac.control({"install"});
    mac.control(row.setting);
    expectRan(mac.run(row.command), row.status, row.output, row.error);
  }
}

TEST(ExtensionCommands, AnUnwritableHomeFailsNoActivation) {
  const Mac mac;
  mac.control({"scenario", "protected"});
  mac.control({"install"});
  for (const auto* folder : {"Application Support", "LaunchAgents"}) {
    mac.place.write(std::string("root/Users/robin/Library/") + folder, "a file in the folder's place");
  }
  expectRan(mac.run("activate"), 0,
            activating + activated + locked +
                "menu bar: could not write LaunchAgent (Not a directory) — skipped\n" + flows,
            "");
}

TEST(ExtensionCommands, ADeniedActivationFailsAndAnApprovalAfterTheEndStillHolds) {
  const Mac mac;
  mac.control({"scenario", "fresh-install"});
  mac.control({"install"});
  mac.control({"callbacks", "twice"});
  Process denied(mac.command("activate"), mac.environment);
  denied.awaitOutput(activationApproval);
  mac.control({"deny"});
  EXPECT_EQ(denied.end(), 1);
  EXPECT_EQ(denied.output(), activating + activationApproval);
  EXPECT_EQ(denied.error(), "system extension activate failed: The request was not authorized.\n");

  Process ended(mac.command("activate"), mac.environment);
  ended.awaitOutput(activationApproval);
  ended.signal(SIGINT);
  EXPECT_EQ(ended.end(), 128 + SIGINT);
  EXPECT_EQ(mac.report()["health"]["sysext"]["code"], "SYSEXT_WAITING_APPROVAL");
  mac.control({"approve"});
  expectRan(mac.run("activate"), 0, activating + activated + locked + atNextLogin + flows, "");
}

TEST(ExtensionCommands, ASignalEndsTheCommandAtOnceWhileLaunchdIsSlow) {
  const std::pair<const char*, std::string> rows[] = {
      {"activate", activating + activated + locked},
      {"deactivate", deactivating + deactivated},
      {"relaunch", ""},
  };
  for (const auto& [command, output] : rows) {
    SCOPED_TRACE(command);
    const Mac mac;
    mac.control({"scenario", "protected"});
    mac.control({"install"});
    const auto launchctl = mac.place / "root/bin/launchctl";
    fs::remove(launchctl);
    mac.place.write("root/bin/launchctl", "#!/bin/sh\n: > " + (mac.place / "asked") + "\nsleep 100\n");
    fs::permissions(launchctl, fs::perms::owner_all);
    mac.place.write(jobFile, "a job");
    Process process(mac.command(command), mac.environment);
    EXPECT_TRUE(becomesTrue([&] { return fs::exists(mac.place / "asked"); }));
    process.signal(SIGTERM);
    EXPECT_EQ(process.end(5s), 128 + SIGTERM);
    EXPECT_EQ(process.output(), output);
    EXPECT_EQ(process.error(), "");
    EXPECT_TRUE(fs::exists(mac.place / jobFile));
  }
}

TEST(ExtensionCommands, ConcurrentActivationsBothSucceedWithOneProxyAndOneAgent) {
  for (const auto* approval : {"new", "never"}) {
    Mac mac;
    mac.environment["DISPLAY"] = ":7";
    mac.control({"scenario", "fresh-install"});
    mac.control({"install"});
    mac.control({"approval", approval});
    const bool isAsked = approval == std::string("new");
    Process first(mac.command("activate"), mac.environment);
    Process second(mac.command("activate"), mac.environment);
    for (auto* each : {&first, &second}) {
      if (isAsked) each->awaitOutput(activationApproval);
    }
    if (isAsked) mac.control({"approve"});
    int startedAtOnce = 0;
    for (auto* each : {&first, &second}) {
      EXPECT_EQ(each->end(), 0) << each->error();
      // Launchd refuses a job that the other has loaded meanwhile.
      const bool isAtOnce = each->output().contains(atOnce);
      startedAtOnce += isAtOnce ? 1 : 0;
      // It may have lost the race for the one proxy and retried.
      EXPECT_TRUE(each->output().ends_with(locked + (isAtOnce ? atOnce : atNextLogin) + flows))
          << each->output();
    }
    EXPECT_GE(startedAtOnce, 1);
    EXPECT_EQ(mac.verdict(), "protected");
    EXPECT_EQ(mac.json(std::string(records) + "applied-capture.json")["captured_hosts"].size(), 19U);
    EXPECT_EQ(mac.state(simulatedstate::transparentProxies).size(), 1U);
    EXPECT_TRUE(fs::exists(mac.place / jobFile));
    EXPECT_TRUE(becomesTrue([&] { return processesWith(mac.place.path()).size() == 1; })) << "one agent";
    EXPECT_EQ(mac.run("deactivate").status, 0);
  }
}

TEST(ExtensionCommands, WithoutAnArgumentItActivatesOnceAndThenRelaunchesTheAgent) {
  Mac mac;
  mac.control({"scenario", "fresh-install"});
  Process daemon({CONTROL, "serve"}, mac.environment);
  daemon.awaitOutput("Serving");
  EXPECT_TRUE(ostrel::run(mac.command(""), mac.environment, "quit\n").output.contains("Set up Ostrel Agent"));
  mac.control({"install"});
  mac.environment["DISPLAY"] = ":7";
  expectRan(mac.runApproved(""), 0, activating + activationApproval + activated + locked + atOnce + flows,
            "");
  for (const bool isLoaded : {true, false}) {
    const auto before = mac.control({"agent"});
    if (!isLoaded) {
      EXPECT_EQ(bootOutMenuBarAgent(mac.place / "root", mac.environment).status, 0);
    }
    const auto start = std::chrono::steady_clock::now();
    // It ignores its input.
    expectRan(ostrel::run(mac.command(""), mac.environment, "panel\nquit\n"), 0, "",
              "ostrel: the plug-in " + (mac.place / "OstrelAgent.app/Contents/PlugIns/Shell.so") +
                  " cannot be loaded: No such file or directory\n");
    EXPECT_GE(std::chrono::steady_clock::now() - start, 5s);
    EXPECT_NE(mac.control({"agent"}), before);
  }
  EXPECT_EQ(mac.run("deactivate").status, 0);
  EXPECT_EQ(daemon.end(), 0) << "the uninstallation ends it";
}

}  // namespace
}  // namespace ostrel
