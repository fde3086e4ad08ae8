#include "Shells/Desktop/DesktopSettings.hpp"

#include <algorithm>

namespace ostrel {

namespace {

constexpr std::uint32_t prefersDark = 1;
constexpr std::uint32_t prefersLight = 2;
constexpr int darkestLight = 128;
constexpr double usualFontPoints = 11;  // up to here a font is not a large one
constexpr double largestScale = 3;

Appearance appearanceOf(const DesktopSettings& settings) {
  if (settings.colorScheme == prefersDark) return Appearance::dark;
  if (settings.colorScheme == prefersLight) return Appearance::light;
  return settings.paletteLightness.value_or(darkestLight) < darkestLight ? Appearance::dark
                                                                         : Appearance::light;
}

}  // namespace

DesktopLook desktopLook(const DesktopSettings& settings) {
  // In this order a factor that is no number counts for nothing.
  const double scale = std::max(settings.fontPoints / usualFontPoints, settings.textScaling.value_or(1));
  return {.appearance = appearanceOf(settings),
          .reducesMotion = settings.reducedMotion == 1U || settings.animations == false,
          .textScale = scale > 1 ? std::min(scale, largestScale) : 1};
}

}  // namespace ostrel
