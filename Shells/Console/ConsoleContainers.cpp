#include "Shells/Console/ConsoleContainers.hpp"

#include <array>
#include <utility>

#include "OstrelAgent/Text/AsciiCase.hpp"
#include "OstrelAgent/Text/Copy.hpp"
#include "Shells/Console/ContainersText.hpp"

namespace ostrel {

namespace {

constexpr std::array<std::pair<std::string_view, ContainersCopy>, 3> copyWords = {{
    {"setup", ContainersCopy::setupCommand},
    {"guest", ContainersCopy::guestCommand},
    {"path", ContainersCopy::bundlePath},
}};

}  // namespace

void ConsoleContainers::show(const ContainersPageContent& content) {
  shown_ = content;
  auto text = showsDetail_ ? containerDetailText(content) : containersListText(content);
  if (text == printed_) return;
  printed_ = std::move(text);
  if (isQuiet_) return;
  streams_.writeOutput("\n" + printed_ + "\n");
  // How containers are started does not change, so it is printed once.
  if (!content.checking.empty() || !std::exchange(isInsideDue_, false)) return;
  streams_.writeOutput(containersInsideText(content) + "\n");
}

void ConsoleContainers::open(std::string_view runtime) {
  std::optional<std::string> name;
  if (!runtime.empty() && !(name = runtimeNamed(runtime))) return;
  showsDetail_ = name.has_value();
  if (name) {
    const Quiet quiet(isQuiet_);
    events_.selected(*name);
  }
  printed_.clear();
  isInsideDue_ = !showsDetail_;
  events_.opened();
}

void ConsoleContainers::copy(std::string_view word) {
  const Quiet quiet(isQuiet_);
  for (const auto& [name, what] : copyWords) {
    if (name != word) continue;
    if (events_.copyPressed(what)) return;
    const bool isSelected = shown_ && shown_->detail;
    return streams_.writeOutput(isSelected ? shown_->detail->name + " has no such command\n"
                                           : std::string(Copy::containersNoSelection.text()) + "\n");
  }
  if (const auto snippet = containerSnippetNamed(word)) {
    events_.snippetChosen(*snippet);
    (void)events_.copyPressed(ContainersCopy::snippet);
    return;
  }
  streams_.writeOutput("copy takes setup, guest, path, dockerRun, compose, dockerfile or envFile\n");
}

void ConsoleContainers::switchNotification(std::string_view runtime, bool isOn) {
  const auto name = runtimeNamed(runtime);
  if (!name) return;
  const Quiet quiet(isQuiet_);
  const bool stored = events_.notifySwitched(*name, isOn);
  streams_.writeOutput(!stored ? "the setting could not be stored\n"
                               : Copy::containerTrustNotifyFor.with(*name) + (isOn ? ": on\n" : ": off\n"));
}

std::optional<std::string> ConsoleContainers::runtimeNamed(std::string_view name) {
  for (const auto& runtime : ContainerRuntime::table) {
    if (runtime.name.size() == name.size() && containsIgnoringCase(runtime.name, name)) {
      return std::string(runtime.name);
    }
  }
  streams_.writeOutput("there is no container runtime \"" + std::string(name) + "\"; containers shows all\n");
  return std::nullopt;
}

}  // namespace ostrel
