#include "Platform/Console/ConsoleCommand.hpp"

#include <charconv>

namespace ostrel {

namespace {

constexpr std::string_view blanks = " \t\r";

std::string_view trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

}  // namespace

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
