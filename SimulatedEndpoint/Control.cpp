#include "SimulatedEndpoint/Control.hpp"

#include <algorithm>

namespace ostrel::simulated {

namespace {

constexpr const char* help =
    "simulated-endpoint decides what the simulated Mac's endpoint reports.\n"
    "\n"
    "  simulated-endpoint list             the scenarios; a star marks the current one\n"
    "  simulated-endpoint scenario NAME    switch to a scenario\n"
    "  simulated-endpoint set KEY VALUE    change one value of the current scenario, for example\n"
    "                                        set report.health.verdict degraded\n"
    "                                        set helper.exit 3\n"
    "                                        set network.content_filter.enabled false\n"
    "  simulated-endpoint show             print the current scenario\n"
    "  simulated-endpoint root             print the folder of the simulated Mac\n"
    "  simulated-endpoint help             print this text\n";

ControlResult usageFault(const std::string& sentence) {
  return {2, "simulated-endpoint: " + sentence + "\n"};
}

ControlResult failed(const std::string& sentence) { return {1, "simulated-endpoint: " + sentence + "\n"}; }

ControlResult list(const ScenarioFolder& folder, const SimulatedState& state) {
  const auto names = folder.names();
  if (names.empty()) return failed("there are no scenario files beside this program");
  const auto current = state.scenario();
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

ControlResult chooseScenario(const std::string& name, const ScenarioFolder& folder,
                             const SimulatedState& state, const std::string& profilesTool) {
  if (!std::ranges::binary_search(folder.names(), name)) {
    const auto closest = folder.closestName(name);
    return failed("there is no scenario " + inQuotes(name) +
                  (closest ? "; did you mean " + inQuotes(*closest) + "? " : "; ") +
                  "`simulated-endpoint list` shows all");
  }
  const auto scenario = folder.load(name);
  if (!scenario) return failed(scenario.error());
  if (auto chosen = state.choose(*scenario, ""); !chosen) return failed(chosen.error());
  if (auto linked = state.linkProfilesTool(profilesTool); !linked) return failed(linked.error());
  return {0, "Now simulating " + name + ": " + scenario->description() + "\n"};
}

ControlResult setValue(const std::string& path, const std::string& text, const SimulatedState& state) {
  const auto current = state.scenario();
  if (!current) return failed(current.error() + "\nChoose a scenario anew to mend it.");
  const auto value = jsonOrText(text);
  if (!value) return failed(value.error());
  const auto changed = current->with(path, *value);
  if (!changed) return failed(changed.error());
  if (auto chosen = state.choose(*changed, path); !chosen) return failed(chosen.error());
  return {0, path + " is now " + value->dump() + "\n"};
}

ControlResult show(const SimulatedState& state) {
  const auto current = state.scenario();
  if (!current) return failed(current.error() + "\nChoose a scenario anew to mend it.");
  return {0, printJson(current->document())};
}

}  // namespace

ControlResult runControl(std::span<const std::string> arguments, const ScenarioFolder& folder,
                         const SimulatedState& state, const std::string& profilesTool) {
  const auto command = arguments.empty() ? std::string() : arguments.front();
  const auto count = arguments.size();
  if (command.empty()) return {2, help};
  if (command == "help" || command == "--help") return {0, help};
  if (command == "list" && count == 1) return list(folder, state);
  if (command == "show" && count == 1) return show(state);
  if (command == "root" && count == 1) return {0, state.hostRoot() + "\n"};
  if (command == "scenario" && count == 2) return chooseScenario(arguments[1], folder, state, profilesTool);
  if (command == "scenario")
    return usageFault("scenario takes one name; `simulated-endpoint list` shows all");
  if (command == "set" && count == 3) return setValue(arguments[1], arguments[2], state);
  if (command == "set")
    return usageFault("set takes a key and a value, as in `set report.health.verdict degraded`");
  if (command == "list" || command == "show" || command == "root")
    return usageFault(command + " takes nothing more");
  return usageFault("there is no command " + inQuotes(command) + "; `simulated-endpoint help` shows all");
}

}  // namespace ostrel::simulated
