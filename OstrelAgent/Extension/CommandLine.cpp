#include "OstrelAgent/Extension/CommandLine.hpp"

#include <algorithm>
#include <iterator>

namespace ostrel {

namespace {

struct Row {
  std::string_view command;
  Role role;
};

constexpr Row rows[] = {
    {"relaunch", Role::relaunch},
    {"menubar", Role::menuBar},
    {"onboarding", Role::onboarding},
    {"repair", Role::repair},
};

}  // namespace

CommandLine CommandLine::parse(std::span<const char* const> arguments) {
  CommandLine line;
  if (!arguments.empty()) line.command = arguments.front();
  line.extensionOnly = std::ranges::any_of(
      arguments, [](std::string_view argument) { return argument == "--extension-only"; });
  return line;
}

std::optional<Role> roleOf(std::string_view command) {
  const auto* row = std::ranges::find(rows, command, &Row::command);
  if (row == std::end(rows)) return std::nullopt;
  return row->role;
}

std::string defaultCommand(const NeedQuestions& questions) {
  if (questions.isTrustPending()) return "onboarding";
  if (!questions.isEnrolled()) return "onboarding";
  if (questions.hasMenuBarAgent()) return "relaunch";
  return "activate";
}

}  // namespace ostrel
