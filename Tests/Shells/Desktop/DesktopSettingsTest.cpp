#include "Shells/Desktop/DesktopSettings.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <utility>

namespace ostrel {
namespace {

TEST(DesktopTheme, TakesThePortalsSchemeBeforeThePaletteAndIsLightWithoutBoth) {
  const std::pair<DesktopSettings, Appearance> rows[] = {
      {{}, Appearance::light},
      {{.paletteLightness = 128}, Appearance::light},
      {{.paletteLightness = 127}, Appearance::dark},
      {{.colorScheme = 1, .paletteLightness = 255}, Appearance::dark},
      {{.colorScheme = 2, .paletteLightness = 0}, Appearance::light},
      {{.colorScheme = 0, .paletteLightness = 40}, Appearance::dark},
      {{.colorScheme = 0, .paletteLightness = 240}, Appearance::light},
      {{.colorScheme = 3, .paletteLightness = 40}, Appearance::dark},
      {{.colorScheme = 0}, Appearance::light},
  };
  for (const auto& [settings, appearance] : rows) {
    EXPECT_EQ(desktopTheme(settings).appearance, appearance)
        << settings.colorScheme.value_or(9) << ' ' << settings.paletteLightness.value_or(-1);
  }
}

TEST(DesktopTheme, ReducesMotionWhereEitherSwitchSaysSo) {
  const std::pair<DesktopSettings, bool> rows[] = {
      {{}, false},
      {{.reducedMotion = 1}, true},
      {{.reducedMotion = 0}, false},
      {{.reducedMotion = 2}, false},
      {{.animations = false}, true},
      {{.animations = true}, false},
      {{.reducedMotion = 1, .animations = true}, true},
      {{.reducedMotion = 0, .animations = false}, true},
  };
  for (const auto& [settings, reduces] : rows) {
    EXPECT_EQ(desktopTheme(settings).reducesMotion, reduces)
        << settings.reducedMotion.value_or(9) << ' ' << settings.animations.value_or(true);
  }
}

TEST(DesktopTheme, ScalesTextsFromOneToThreeByTheLargerOfFactorAndFont) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  constexpr double nothing = std::numeric_limits<double>::quiet_NaN();
  const std::pair<DesktopSettings, double> rows[] = {
      {{}, 1},
      {{.textScaling = 1.25}, 1.25},
      {{.textScaling = 0.5}, 1},
      {{.textScaling = -4}, 1},
      {{.textScaling = 40}, 3},
      {{.textScaling = infinity}, 3},
      {{.textScaling = nothing}, 1},
      {{.fontPoints = 22}, 2},
      {{.fontPoints = 11}, 1},
      {{.fontPoints = 8}, 1},
      {{.fontPoints = -1}, 1},
      {{.textScaling = 1.5, .fontPoints = 22}, 2},
      {{.textScaling = 2.5, .fontPoints = 22}, 2.5},
      {{.textScaling = nothing, .fontPoints = 22}, 2},
  };
  for (const auto& [settings, scale] : rows) {
    EXPECT_DOUBLE_EQ(desktopTheme(settings).textScale, scale)
        << settings.textScaling.value_or(1) << ' ' << settings.fontPoints;
  }
}

}  // namespace
}  // namespace ostrel
