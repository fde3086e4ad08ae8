#include "Tools/PreviewOptions.hpp"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <utility>

#include "OstrelAgent/Window/AgentWindowContent.hpp"

namespace ostrel {

namespace {

constexpr std::pair<std::string_view, PreviewOptions::Mode> modes[] = {
    {"--text", PreviewOptions::Mode::text},
    {"--json", PreviewOptions::Mode::json},
    {"--export-strings", PreviewOptions::Mode::exportStrings},
    {"--help", PreviewOptions::Mode::help},
};

bool takesValue(std::string_view argument) {
  return argument == "--language" || argument == "--png" || argument == "--icon" || argument == "--scale" ||
         argument == "--onboarding" || argument == "--alert" || argument == "--window" ||
         argument == "--situation" || argument == "--size" || argument == "--text-scale";
}

/// The whole text as a positive number.
std::optional<double> positiveNumber(std::string_view text) {
  double number = 0;
  const auto* end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || rest != end || !(number > 0)) return std::nullopt;
  return number;
}

/// "780x540".
std::optional<WindowSize> sizeOf(std::string_view text) {
  const auto cross = text.find('x');
  if (cross == text.npos) return std::nullopt;
  const auto width = positiveNumber(text.substr(0, cross));
  const auto height = positiveNumber(text.substr(cross + 1));
  if (!width || !height) return std::nullopt;
  return WindowSize{*width, *height};
}

}  // namespace

/// Selects the mode; false for a second one.
bool PreviewOptions::choose(Mode chosen) {
  if (isChosen_ && mode != chosen) return false;
  mode = chosen;
  isChosen_ = true;
  return true;
}

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
  if (argument == "--onboarding") {
    onboarding = value;
    return !value.empty();
  }
  if (argument == "--window") {
    window = agentPageNamed(value);
    return window.has_value();
  }
  if (argument == "--alert" || argument == "--situation") {
    (argument == "--alert" ? alert : situation) = value;
    return !value.empty();
  }
  if (argument == "--size") {
    size = sizeOf(value);
    return size.has_value();
  }
  if (argument == "--text-scale") {
    const auto number = positiveNumber(value);
    textScale = number.value_or(1);
    return number.has_value();
  }
  (argument == "--png" ? png : icon) = value;
  return !value.empty() && choose(Mode::pictures);
}

std::optional<PreviewOptions> PreviewOptions::parse(std::span<const char* const> arguments) {
  PreviewOptions options;
  while (!arguments.empty()) {
    const std::string_view argument = arguments.front();
    arguments = arguments.subspan(1);
    const auto* mode = std::ranges::find(modes, argument, &std::pair<std::string_view, Mode>::first);
    if (mode != std::end(modes)) {
      if (!options.choose(mode->second)) return std::nullopt;
    } else if (argument == "--containers") {
      options.isContainers = true;
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
  const bool isForPictures = options.isDark || options.scale != 1 || options.textScale != 1 || options.size;
  if (isForPictures && options.mode != Mode::pictures) return std::nullopt;
  const bool takesDocument = options.file || options.icon || options.mode == Mode::json;
  if ((options.onboarding || options.alert) && (takesDocument || options.isContainers)) return std::nullopt;
  if (options.onboarding && options.alert) return std::nullopt;
  if (options.isContainers && options.mode == Mode::pictures) return std::nullopt;
  if ((options.situation || options.size) && !options.window) return std::nullopt;
  if (options.window && options.icon) return std::nullopt;
  if (options.window && (options.isContainers || options.onboarding || options.alert)) return std::nullopt;
  if (options.file == "-") options.file.reset();
  return options;
}

}  // namespace ostrel
