#include "Shells/Console/ConsoleCommand.hpp"

#include <charconv>

#include "OstrelAgent/Text/Whitespace.hpp"

namespace ostrel {

ConsoleCommand parseConsoleCommand(std::string_view line) {
  const auto text = trimmed(line);
  if (text.empty()) return consolecommand::Nothing{};
  if (text == "panel") return consolecommand::ShowPanel{};
  if (text == "close") return consolecommand::ClosePanel{};
  if (text == "quit") return consolecommand::Quit{};
  if (text.starts_with("token ")) return consolecommand::Token{std::string(trimmed(text.substr(6)))};
  if (!text.starts_with("press ")) return consolecommand::Unknown{};
  const auto digits = trimmed(text.substr(6));
  consolecommand::Press press;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), press.number);
  if (error != std::errc() || end != digits.data() + digits.size()) return consolecommand::Unknown{};
  return press;
}

}  // namespace ostrel
