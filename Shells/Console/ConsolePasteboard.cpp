#include "Shells/Console/ConsolePasteboard.hpp"

#include <algorithm>
#include <string>

#include "Shells/Console/PrintableText.hpp"

namespace ostrel {

bool ConsolePasteboard::setText(std::string_view text) {
  std::string printed = "\nto copy:\n";
  while (!text.empty()) {
    const auto end = std::min(text.find('\n'), text.size());
    printed += printableText(text.substr(0, end)) + '\n';
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  streams_.writeOutput(printed);
  return true;
}

}  // namespace ostrel
