#include "OstrelAgent/Text/TextFormat.hpp"

#include <algorithm>
#include <optional>

namespace ostrel {

namespace {

/// A directive after "%": its length in bytes and its specifier; "%%" has none.
struct Directive {
  std::size_t length = 0;
  std::optional<FormatSpecifier> specifier;
};

bool isKind(char c) { return c == '@' || c == 'd'; }

/// Reads the directive at a "%"; nullopt when the "%" is literal. `unnumbered` counts directives without
/// number.
std::optional<Directive> readDirective(std::string_view rest, std::size_t& unnumbered) {
  if (rest.size() < 2) return std::nullopt;
  if (rest[1] == '%') return Directive{2, std::nullopt};
  if (isKind(rest[1])) return Directive{2, FormatSpecifier{++unnumbered, rest[1]}};
  const bool numbered =
      rest.size() >= 4 && rest[1] >= '1' && rest[1] <= '9' && rest[2] == '$' && isKind(rest[3]);
  if (!numbered) return std::nullopt;
  return Directive{4, FormatSpecifier{static_cast<std::size_t>(rest[1] - '0'), rest[3]}};
}

void append(std::string& text, const FormatArgument& argument) {
  if (const auto* words = std::get_if<std::string_view>(&argument)) {
    text += *words;
  } else {
    text += std::to_string(std::get<std::int64_t>(argument));
  }
}

/// Visits a format in order: `literal` gets its texts, `specifier` its specifiers.
template <class Literal, class Specifier>
void walkFormat(std::string_view format, Literal literal, Specifier specifier) {
  std::size_t unnumbered = 0;
  while (!format.empty()) {
    const auto percent = std::min(format.find('%'), format.size());
    literal(format.substr(0, percent));
    format.remove_prefix(percent);
    if (format.empty()) return;
    const auto directive = readDirective(format, unnumbered);
    if (!directive || !directive->specifier) literal("%");
    if (directive && directive->specifier) specifier(*directive->specifier);
    format.remove_prefix(directive ? directive->length : 1);
  }
}

}  // namespace

std::vector<FormatSpecifier> formatSpecifiers(std::string_view format) {
  std::vector<FormatSpecifier> found;
  walkFormat(
      format, [](std::string_view) {}, [&](FormatSpecifier specifier) { found.push_back(specifier); });
  std::sort(found.begin(), found.end());
  return found;
}

std::string formatText(std::string_view format, std::initializer_list<FormatArgument> arguments) {
  std::string text;
  text.reserve(format.size() + 16 * arguments.size());
  walkFormat(
      format, [&](std::string_view literal) { text += literal; },
      [&](FormatSpecifier specifier) {
        if (specifier.position <= arguments.size()) append(text, arguments.begin()[specifier.position - 1]);
      });
  return text;
}

}  // namespace ostrel
