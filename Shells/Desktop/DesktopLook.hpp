#pragma once

#include "Platform/Appearance.hpp"

namespace ostrel {

/// How the person's desktop wants its windows.
struct DesktopLook {
  Appearance appearance = Appearance::light;
  bool reducesMotion = false;
  double textScale = 1.0;  ///< of the program's own text sizes, 1 to 3

  bool operator==(const DesktopLook&) const = default;
};

}  // namespace ostrel
