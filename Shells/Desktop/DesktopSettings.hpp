#pragma once

#include <cstdint>
#include <optional>

#include "Shells/Desktop/DesktopTheme.hpp"

namespace ostrel {

/// The desktop's settings of appearance, motion and text size, as far as they are known.
struct DesktopSettings {
  /// Of the settings portal: 1 prefers dark, 2 prefers light.
  std::optional<std::uint32_t> colorScheme = std::nullopt;
  std::optional<std::uint32_t> reducedMotion = std::nullopt;  ///< of the settings portal: 1 wants it
  std::optional<bool> animations = std::nullopt;              ///< the desktop's own switch
  std::optional<double> textScaling = std::nullopt;
  std::optional<int> paletteLightness = std::nullopt;  ///< of the toolkit's window colour, 0 to 255
  double fontPoints = 0;  ///< of the toolkit's standard font; 0 when that has no size in points

  bool operator==(const DesktopSettings&) const = default;
};

/// The portal's word counts; else a dark palette is a dark desktop; else the desktop is light.
DesktopTheme desktopTheme(const DesktopSettings& settings);

}  // namespace ostrel
