#include "Tools/PreviewOptions.hpp"

namespace ostrel {

namespace {

bool takesValue(std::string_view argument) {
  return argument == "--language" || argument == "--png" || argument == "--icon" || argument == "--scale";
}

}  // namespace

bool PreviewOptions::take(std::string_view argument, std::string_view value) {
  if (argument == "--language") {
    language = value;
    return true;
  }
  if (argument == "--scale") {
    const bool isScale = value.size() == 1 && value >= "1" && value <= "3";
    if (isScale) scale = value[0] - '0';
    return isScale;
  }
  mode = Mode::pictures;
  (argument == "--png" ? png : icon) = value;
  return !value.empty();
}

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
    } else if (argument == "--dark") {
      options.isDark = true;
    } else if (takesValue(argument)) {
      if (arguments.empty() || !options.take(argument, arguments.front())) return std::nullopt;
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
