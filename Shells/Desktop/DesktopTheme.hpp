#pragma once

#include "Platform/Appearance.hpp"

namespace ostrel {

/// The user's appearance, motion and text size of the desktop.
struct DesktopTheme {
  Appearance appearance = Appearance::light;
  bool reducesMotion = false;
  double textScale = 1.0;  ///< of the program's own text sizes, 1 to 3

  bool operator==(const DesktopTheme&) const = default;
};

}  // namespace ostrel
