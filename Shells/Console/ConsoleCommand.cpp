#include "Shells/Console/ConsoleCommand.hpp"

#include <charconv>

#include "OstrelAgent/Text/Whitespace.hpp"

namespace ostrel {

namespace {

ConsoleCommand parsePress(std::string_view digits) {
  consolecommand::Press press;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), press.number);
  if (error != std::errc() || end != digits.data() + digits.size()) return consolecommand::Unknown{};
  return press;
}

/// A runtime's name, which may have blanks, and "on" or "off".
ConsoleCommand parseNotify(std::string_view words) {
  const auto end = words.find_last_of(" \t");
  if (end == words.npos) return consolecommand::Unknown{};
  const auto state = words.substr(end + 1);
  if (state != "on" && state != "off") return consolecommand::Unknown{};
  return consolecommand::Notify{std::string(trimmed(words.substr(0, end))), state == "on"};
}

}  // namespace

ConsoleCommand parseConsoleCommand(std::string_view line) {
  const auto text = trimmed(line);
  const auto name = text.substr(0, text.find_first_of(" \t"));
  const auto rest = trimmed(text.substr(name.size()));
  if (name == "window") return consolecommand::ShowWindow{std::string(rest)};
  if (name == "containers") return consolecommand::ShowContainers{std::string(rest)};
  if (rest.empty()) {
    if (name.empty()) return consolecommand::Nothing{};
    if (name == "panel") return consolecommand::ShowPanel{};
    if (name == "close") return consolecommand::CloseFront{};
    if (name == "quit") return consolecommand::Quit{};
    return consolecommand::Unknown{};
  }
  if (name == "token") return consolecommand::Token{std::string(rest)};
  if (name == "copy") return consolecommand::Copy{std::string(rest)};
  if (name == "notify") return parseNotify(rest);
  if (name == "press") return parsePress(rest);
  return consolecommand::Unknown{};
}

}  // namespace ostrel
