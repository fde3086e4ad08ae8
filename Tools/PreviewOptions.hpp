#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace ostrel {

/// What the preview was asked for.
struct PreviewOptions {
  enum class Mode { text, json, pictures, exportStrings, help };

  Mode mode = Mode::text;
  std::string language;                   ///< "de"; empty for English
  std::optional<std::string> file;        ///< nothing for standard input
  std::optional<std::string> png;         ///< where to write the panel's picture
  std::optional<std::string> icon;        ///< where to write the icon's picture
  std::optional<std::string> onboarding;  ///< the stage of the onboarding window to show in place of a panel
  std::optional<std::string> alert;       ///< the alert to show in place of a panel
  bool isDark = false;                    ///< in pictures
  int scale = 1;                          ///< pixels for a point of pictures: 1, 2 or 3

  /// Nothing for arguments that it does not take.
  static std::optional<PreviewOptions> parse(std::span<const char* const> arguments);

 private:
  bool choose(Mode chosen);
  bool take(std::string_view argument, std::string_view value);

  bool isChosen_ = false;  ///< the mode
};

}  // namespace ostrel
