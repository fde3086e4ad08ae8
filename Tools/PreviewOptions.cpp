#include "Tools/PreviewOptions.hpp"

#include <string_view>

namespace ostrel {

std::optional<PreviewOptions> PreviewOptions::parse(std::span<const char* const> arguments) {
  PreviewOptions options;
  while (!arguments.empty()) {
    const std::string_view argument = arguments.front();
    arguments = arguments.subspan(1);
    if (argument == "--text") {
      options.mode = Mode::text;
    } else if (argument == "--json") {
      options.mode = Mode::json;
    } else if (argument == "--export-strings") {
      options.mode = Mode::exportStrings;
    } else if (argument == "--help") {
      options.mode = Mode::help;
    } else if (argument == "--language" && !arguments.empty()) {
      options.language = arguments.front();
      arguments = arguments.subspan(1);
    } else if (!argument.starts_with("--") && !options.file) {
      options.file = argument;
    } else {
      return std::nullopt;
    }
  }
  if (options.file == "-") options.file.reset();
  return options;
}

}  // namespace ostrel
