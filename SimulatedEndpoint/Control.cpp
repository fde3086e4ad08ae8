#include "SimulatedEndpoint/Control.hpp"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <string_view>
#include <utility>

#include "SimulatedEndpoint/ControlMac.hpp"
#include "SimulatedEndpoint/ControlOverrides.hpp"
#include "SimulatedEndpoint/Daemon.hpp"
#include "SimulatedEndpoint/DottedPath.hpp"
#include "SimulatedEndpoint/EndpointFiles.hpp"
#include "SimulatedEndpoint/EndpointReport.hpp"
#include "SimulatedEndpoint/ExtensionSettings.hpp"
#include "SimulatedEndpoint/LaunchJobs.hpp"
#include "SimulatedEndpoint/ScenarioMac.hpp"
#include "SimulatedEndpoint/ServiceLock.hpp"
#include "SimulatedEndpoint/TimeOffset.hpp"

namespace ostrel::simulated {

namespace {

constexpr const char* help =
    "simulated-endpoint decides what the simulated Mac's endpoint reports, and acts as its user.\n"
    "\n"
    "What the endpoint reports:\n"
    "  list                       the scenarios; a star marks the current one\n"
    "  scenario NAME              switch to a scenario\n"
    "  set KEY VALUE              change one value of the current scenario, for example\n"
    "                               set report.health.verdict degraded\n"
    "                               set helper.exit 3\n"
    "                               set network.content_filter.enabled false\n"
    "  show                       print the current scenario\n"
    "\n"
    "The endpoint itself:\n"
    "  install [--without-token]  install it as root does: enrolled and trusted, or neither\n"
    "  serve                      run its daemon until Ctrl+C\n"
    "  stop                       end its daemon\n"
    "  upgrade VERSION            bring endpoint and application to another version\n"
    "\n"
    "The user in System Settings:\n"
    "  approve                    approve what waits for approval\n"
    "  deny                       decline it\n"
    "\n"
    "The Mac itself:\n"
    "  wake                       return from sleep\n"
    "  app install|remove IDENTIFIER            an application; to remove it also stops it\n"
    "  app start IDENTIFIER [--launched TIME]   start one instance, now or at a time of RFC 3339\n"
    "  app stop IDENTIFIER                      stop every instance\n"
    "  tool install|remove NAME                 a command-line tool in /opt/homebrew/bin\n"
    "  process start|stop NAME                  a process; stop ends all of the name\n"
    "  docker-sharing PATH...|none              the folders that Docker Desktop shares; none removes\n"
    "                                           its settings\n"
    "  bundle publish [1|2]|remove              the trust bundle, with the device certificate or with two\n"
    "\n"
    "Overrides, which stay until they are taken back:\n"
    "  approval new|always|never        which requests for the extension need approval\n"
    "  result completed|after-reboot    how they end\n"
    "  callbacks once|twice             how often the system reports the end\n"
    "  trust accept|cancel|refuse       what comes of trusting a certificate\n"
    "  notifications real|authorized|denied|undetermined\n"
    "                                   what the user allowed; real is the desktop's own answer\n"
    "  misbehave slow MILLISECONDS|torn|silent|close-early|garbage|huge|array|refuse [REASON]|none\n"
    "                                   how the daemon answers\n"
    "  network down|up INTERFACE...|real    what the Mac's network is; real is the machine's own\n"
    "  fail-requests N DOMAIN CODE [TEXT]   the next N requests for the extension fail; so do with\n"
    "      fail-loads, fail-saves, fail-start, fail-removals         those of the transparent proxy\n"
    "      fail-filter-loads, fail-filter-saves                      those of the content filter\n"
    "  overrides                     print them\n"
    "  clear-overrides               take all back\n"
    "\n"
    "  agent                      print the process number of the menu-bar agent that launchd runs\n"
    "  root                       print the folder of the simulated Mac\n"
    "  help                       print this text\n";

constexpr const char* menuBarJob = "tech.brenn.ostrel-agent.menubar";

ControlResult list(const ControlPlace& place) {
  const auto& folder = place.folder;
  const auto names = folder.names();
  if (names.empty()) return failed("there are no scenario files beside this program");
  const auto current = place.state.scenario();
  const auto width = std::ranges::max(names, {}, &std::string::size).size();
  std::string text;
  for (const auto& name : names) {
    const auto scenario = folder.load(name);
    text += current && current->name() == name ? "* " : "  ";
    text += name + std::string(width - name.size() + 2, ' ');
    text += (scenario ? scenario->description() : "cannot be used: " + scenario.error()) + "\n";
  }
  return {0, text};
}

/// Gives the Mac the software that the scenario names.
[[nodiscard]] std::expected<void, std::string> arrangeSoftware(const Scenario& scenario,
                                                               const ControlPlace& place) {
  if (scenario.mac().is_null()) return {};
  return arrangeMac(scenario.mac(), place.files, place.state.root());
}

ControlResult chooseScenario(const std::string& name, const ControlPlace& place) {
  if (!std::ranges::binary_search(place.folder.names(), name)) {
    const auto closest = place.folder.closestName(name);
    return failed("there is no scenario " + inQuotes(name) +
                  (closest ? "; did you mean " + inQuotes(*closest) + "? " : "; ") +
                  "`simulated-endpoint list` shows all");
  }
  const auto scenario = place.folder.load(name);
  if (!scenario) return failed(scenario.error());
  if (auto chosen = place.state.choose(*scenario, ""); !chosen) return failed(chosen.error());
  if (auto arranged = arrangeSoftware(*scenario, place); !arranged) return failed(arranged.error());
  if (auto linked = place.state.linkTools(place.toolFolder); !linked) return failed(linked.error());
  return {0, "Now simulating " + name + ": " + scenario->description() + "\n"};
}

ControlResult setValue(const std::string& path, const std::string& text, const ControlPlace& place) {
  const auto& state = place.state;
  if (const auto current = state.scenario(); !current) {
    return failed(current.error() + "\nChoose a scenario again to repair it.");
  }
  const auto value = jsonOrText(text);
  if (!value) return failed(value.error());
  const auto changed =
      state.change([&](const Scenario& current) { return current.with(path, *value); }, path);
  if (!changed) return failed(changed.error());
  if (pathsTouch("mac", path)) {
    const auto current = state.scenario();
    if (!current) return failed(current.error());
    if (auto arranged = arrangeSoftware(*current, place); !arranged) return failed(arranged.error());
  }
  return {0, path + " is now " + value->dump() + "\n"};
}

ControlResult show(const SimulatedState& state) {
  const auto current = state.scenario();
  if (!current) return failed(current.error() + "\nChoose a scenario again to repair it.");
  return {0, printJson(current->document())};
}

[[nodiscard]] std::expected<void, std::string> changeReportByInstall(bool hasToken,
                                                                     const SimulatedState& state) {
  if (!hasToken) return state.changeReport(reportAfterInstall);
  const auto now = rfc3339(std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now()));
  return state.changeReport([&now](Json report) {
    report = reportAfterTrust(reportAfterInstall(std::move(report)));
    return reportAfterEnrolment(std::move(report), "zq_org_…4f21", now);
  });
}

ControlResult install(bool hasToken, const ControlPlace& place) {
  auto done = place.state.writeLaunchFile();
  if (done) done = changeReportByInstall(hasToken, place.state);
  if (done) done = place.state.linkTools(place.toolFolder);
  if (!done) return failed(done.error());
  return {0, hasToken ? "The endpoint is installed and enrolled\n" : "The endpoint is installed\n"};
}

ControlResult upgradeTo(const std::string& version, const ControlPlace& place) {
  const auto done = upgrade(place.files, place.state, version);
  if (!done) return failed(done.error());
  return {0, "Endpoint and application are now of version " + version + "\n"};
}

ControlResult stop(const ControlPlace& place) {
  endService(place.state.root().realPath(endpointfiles::serviceLock));
  return {};
}

ControlResult answered(const std::expected<SystemExtensionAction, std::string>& action, const char* word) {
  if (!action) return failed(action.error());
  const bool isActivation = *action == SystemExtensionAction::activation;
  return {0,
          std::string("The extension's ") + (isActivation ? "activation" : "removal") + " is " + word + "\n"};
}

ControlResult agent(const ControlPlace& place) {
  const LaunchJobs jobs(place.files, place.state.root());
  const auto process = jobs.process("gui/" + std::to_string(::getuid()) + "/" + menuBarJob);
  if (process == 0) return failed("launchd runs no menu-bar agent");
  return {0, std::to_string(process) + "\n"};
}

using Arguments = std::span<const std::string>;

struct Command {
  std::string_view name;
  std::size_t arguments;  ///< their number behind the name
  ControlResult (*run)(Arguments arguments, const ControlPlace& place);
  const char* takes;
};

constexpr const char* nothing = "nothing more";

constexpr std::array commands = {
    Command{"help", 0,
            [](Arguments, const ControlPlace&) {
              return ControlResult{0, help};
            },
            nothing},
    Command{"--help", 0,
            [](Arguments, const ControlPlace&) {
              return ControlResult{0, help};
            },
            nothing},
    Command{"list", 0, [](Arguments, const ControlPlace& place) { return list(place); }, nothing},
    Command{"show", 0, [](Arguments, const ControlPlace& place) { return show(place.state); }, nothing},
    Command{"root", 0,
            [](Arguments, const ControlPlace& place) {
              return ControlResult{0, place.state.hostRoot() + "\n"};
            },
            nothing},
    Command{"scenario", 1,
            [](Arguments words, const ControlPlace& place) { return chooseScenario(words[0], place); },
            "one name; `simulated-endpoint list` shows all"},
    Command{"set", 2,
            [](Arguments words, const ControlPlace& place) { return setValue(words[0], words[1], place); },
            "a key and a value, as in `set report.health.verdict degraded`"},
    Command{"install", 0, [](Arguments, const ControlPlace& place) { return install(true, place); },
            "nothing more, or --without-token"},
    Command{"stop", 0, [](Arguments, const ControlPlace& place) { return stop(place); }, nothing},
    Command{"upgrade", 1,
            [](Arguments words, const ControlPlace& place) { return upgradeTo(words[0], place); },
            "a version"},
    Command{"approve", 0,
            [](Arguments, const ControlPlace& place) {
              return answered(ExtensionSettings(place.files, place.state.root()).approve(), "approved");
            },
            nothing},
    Command{"deny", 0,
            [](Arguments, const ControlPlace& place) {
              return answered(ExtensionSettings(place.files, place.state.root()).deny(), "declined");
            },
            nothing},
    Command{"agent", 0, [](Arguments, const ControlPlace& place) { return agent(place); }, nothing},
};

}  // namespace

ControlResult runControl(Arguments arguments, const ControlPlace& place) {
  if (arguments.empty()) return {2, help};
  if (auto ordered = runOverride(arguments, Overrides(place.files, place.state.root())))
    return *std::move(ordered);
  if (auto done = runMacCommand(arguments, place.files, place.state.root())) return *std::move(done);
  const auto& name = arguments.front();
  const auto words = arguments.subspan(1);
  if (name == "install" && words.size() == 1 && words[0] == "--without-token") return install(false, place);
  const auto command = std::ranges::find(commands, name, &Command::name);
  if (command == commands.end()) {
    return usageFault("there is no command " + inQuotes(name) + "; `simulated-endpoint help` shows all");
  }
  if (words.size() != command->arguments) return usageFault(name + " takes " + command->takes);
  return command->run(words, place);
}

}  // namespace ostrel::simulated
