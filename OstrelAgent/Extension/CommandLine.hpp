#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace ostrel {

/// The roles beside the extension commands, which `Controller` runs.
enum class Role { relaunch, menuBar, onboarding, repair };

/// The program's arguments without its own name.
struct CommandLine {
  std::optional<std::string> command;  ///< the first argument, if any
  bool extensionOnly = false;          ///< "--extension-only" is among them

  static CommandLine parse(std::span<const char* const> arguments);

  bool operator==(const CommandLine&) const = default;
};

/// The role of a command word, or nullopt.
std::optional<Role> roleOf(std::string_view command);

/// Questions about the Mac, each asked only when its answer matters.
struct NeedQuestions {
  std::function<bool()> isTrustPending;
  std::function<bool()> isEnrolled;
  std::function<bool()> hasMenuBarAgent;  ///< the menu-bar agent's job file exists
};

/// The command that the user needs most, for a start without arguments.
std::string defaultCommand(const NeedQuestions& questions);

inline constexpr std::string_view usageLine =
    "usage: OstrelAgent activate|deactivate|reactivate|menubar|onboarding|repair\n";

}  // namespace ostrel
