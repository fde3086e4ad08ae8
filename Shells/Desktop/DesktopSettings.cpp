#include "Shells/Desktop/DesktopSettings.hpp"

#include <algorithm>

namespace ostrel {

namespace {

constexpr std::uint32_t prefersDark = 1;
constexpr std::uint32_t prefersLight = 2;
constexpr int darkestLight = 128;
constexpr double usualFontPoints = 11;  // a larger font means larger texts
constexpr double largestScale = 3;

Appearance appearanceOf(const DesktopSettings& settings) {
  if (settings.colorScheme == prefersDark) return Appearance::dark;
  if (settings.colorScheme == prefersLight) return Appearance::light;
  return settings.paletteLightness.value_or(darkestLight) < darkestLight ? Appearance::dark
                                                                         : Appearance::light;
}

}  // namespace

DesktopTheme desktopTheme(const DesktopSettings& settings) {
  // std::max returns its first argument when the second is NaN.
  const double scale = std::max(settings.fontPoints / usualFontPoints, settings.textScaling.value_or(1));
  return {.appearance = appearanceOf(settings),
          .reducesMotion = settings.reducedMotion == 1U || settings.animations == false,
          .textScale = scale > 1 ? std::min(scale, largestScale) : 1};
}

}  // namespace ostrel
