#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace ostrel {

/// What one process of the program is.
enum class Role { activate, deactivate, reactivate, menuBar, onboarding, repair };

/// The program's arguments, its own name left out.
struct CommandLine {
  std::optional<std::string> command;  ///< the first argument; nothing without one
  bool extensionOnly = false;          ///< "--extension-only" stands anywhere among them

  static CommandLine parse(std::span<const char* const> arguments);

  bool operator==(const CommandLine&) const = default;
};

/// The role of a command word, or nothing for a word that is none.
std::optional<Role> roleOf(std::string_view command);

inline constexpr std::string_view usageLine =
    "usage: OstrelAgent activate|deactivate|reactivate|menubar|onboarding|repair\n";

}  // namespace ostrel
