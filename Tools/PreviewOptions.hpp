#pragma once

#include <optional>
#include <span>
#include <string>

namespace ostrel {

/// What the preview was asked for.
struct PreviewOptions {
  enum class Mode { text, json, exportStrings, help };

  Mode mode = Mode::text;
  std::string language;             ///< "de"; empty for English
  std::optional<std::string> file;  ///< nothing for standard input

  /// Nothing for arguments that it does not take.
  static std::optional<PreviewOptions> parse(std::span<const char* const> arguments);
};

}  // namespace ostrel
