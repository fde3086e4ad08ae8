#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "OstrelAgent/Panel/StatusPanelActions.hpp"
#include "Platform/AgentWindow.hpp"

namespace ostrel {

/// The parsed command line.
struct PreviewOptions {
  enum class Mode { text, json, pictures, exportStrings, help };

  Mode mode = Mode::text;
  std::string language;                   ///< "de"; empty for English
  std::optional<std::string> file;        ///< absent for standard input
  std::optional<std::string> png;         ///< where to write the panel's picture
  std::optional<std::string> icon;        ///< where to write the icon's picture
  std::optional<std::string> onboarding;  ///< the stage of the onboarding window to show in place of a panel
  std::optional<std::string> alert;       ///< the alert to show in place of a panel
  std::optional<AgentPage> window;        ///< the page of the agent window to show in place of a panel
  bool isContainers = false;              ///< `file` is a situation of the containers page, not a report
  std::optional<std::string> situation;   ///< the file of the containers page's situation in the window
  std::optional<WindowSize> size;         ///< of the window's picture
  double textScale = 1;                   ///< in pictures
  bool isDark = false;                    ///< in pictures
  int scale = 1;                          ///< pixels per point of pictures: 1, 2 or 3

  /// Parses the arguments; nullopt for invalid ones.
  static std::optional<PreviewOptions> parse(std::span<const char* const> arguments);

 private:
  bool choose(Mode chosen);
  bool take(std::string_view argument, std::string_view value);

  bool isChosen_ = false;  ///< a mode was given
};

}  // namespace ostrel
