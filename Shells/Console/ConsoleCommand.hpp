#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <variant>

namespace ostrel {

/// One line that the user types at the console shell.
namespace consolecommand {
struct ShowPanel {
  bool operator==(const ShowPanel&) const = default;
};
struct ShowWindow {
  std::string page;  ///< its name; empty for the page shown last
  bool operator==(const ShowWindow&) const = default;
};
struct CloseFront {
  bool operator==(const CloseFront&) const = default;
};
struct Press {
  std::size_t number = 0;  ///< from 1
  bool operator==(const Press&) const = default;
};
struct Token {
  std::string text;
  bool operator==(const Token&) const = default;
};
struct ShowContainers {
  std::string runtime;  ///< whose detail to show; empty for the list
  bool operator==(const ShowContainers&) const = default;
};
struct Copy {
  std::string what;
  bool operator==(const Copy&) const = default;
};
struct Notify {
  std::string runtime;  ///< or "all"
  bool isOn = false;
  bool operator==(const Notify&) const = default;
};
struct Quit {
  bool operator==(const Quit&) const = default;
};
struct Nothing {
  bool operator==(const Nothing&) const = default;
};
struct Unknown {
  bool operator==(const Unknown&) const = default;
};
}  // namespace consolecommand

using ConsoleCommand =
    std::variant<consolecommand::ShowPanel, consolecommand::ShowWindow, consolecommand::CloseFront,
                 consolecommand::Press, consolecommand::Token, consolecommand::ShowContainers,
                 consolecommand::Copy, consolecommand::Notify, consolecommand::Quit, consolecommand::Nothing,
                 consolecommand::Unknown>;

/// "panel", "window", "window PAGE", "close", "press N", "token TEXT", "containers", "containers NAME", "copy
/// WHAT", "notify NAME on", "notify NAME off" or "quit", with blanks around; `Nothing` for an empty line.
ConsoleCommand parseConsoleCommand(std::string_view line);

}  // namespace ostrel
