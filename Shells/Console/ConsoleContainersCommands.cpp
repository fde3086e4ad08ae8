// What the user types about container runtimes.

#include <array>
#include <utility>

#include "OstrelAgent/Text/AsciiCase.hpp"
#include "OstrelAgent/Text/Copy.hpp"
#include "Shells/Console/ConsoleAgentWindow.hpp"

namespace ostrel {

namespace {

constexpr std::array<std::pair<std::string_view, ContainersCopy>, 3> copyWords = {{
    {"setup", ContainersCopy::setupCommand},
    {"guest", ContainersCopy::guestCommand},
    {"path", ContainersCopy::bundlePath},
}};

}  // namespace

void ConsoleAgentWindow::copy(std::string_view word) {
  const Quiet quiet(isQuiet_);
  for (const auto& [name, what] : copyWords) {
    if (name != word) continue;
    if (events_.copyPressed(what)) return;
    return streams_.writeOutput(selected_.empty() ? std::string(Copy::containersNoSelection.text()) + "\n"
                                                  : selected_ + " has no such command\n");
  }
  if (const auto snippet = containerSnippetNamed(word)) {
    events_.snippetChosen(*snippet);
    (void)events_.copyPressed(ContainersCopy::snippet);
    return;
  }
  streams_.writeOutput("copy takes setup, guest, path, dockerRun, compose, dockerfile or envFile\n");
}

void ConsoleAgentWindow::switchNotification(std::string_view runtime, bool isOn) {
  if (runtime == "all") return switchAllNotifications(isOn);
  const auto name = runtimeNamed(runtime);
  if (!name) return;
  const Quiet quiet(isQuiet_);
  tellSwitch(events_.notifySwitched(*name, isOn), Copy::containerTrustNotifyFor.with(*name), isOn,
             "the setting could not be stored");
}

void ConsoleAgentWindow::switchAllNotifications(bool isOn) {
  const Quiet quiet(isQuiet_);
  tellSwitch(events_.allNotifySwitched(isOn), std::string(Copy::notificationsMaster.text()), isOn,
             "the setting was not stored; window notifications shows the runtimes that can be switched");
}

void ConsoleAgentWindow::tellSwitch(bool isStored, const std::string& label, bool isOn, const char* failure) {
  streams_.writeOutput((isStored ? label + (isOn ? ": on" : ": off") : failure) + "\n");
}

/// The table's name of a runtime in any case; prints a sentence and returns nullopt when there is none.
std::optional<std::string> ConsoleAgentWindow::runtimeNamed(std::string_view name) {
  for (const auto& runtime : ContainerRuntime::table) {
    if (runtime.name.size() == name.size() && containsIgnoringCase(runtime.name, name)) {
      return std::string(runtime.name);
    }
  }
  streams_.writeOutput("there is no container runtime \"" + std::string(name) + "\"; containers shows all\n");
  return std::nullopt;
}

}  // namespace ostrel
