#include "Shells/Desktop/PanelPlace.hpp"

#include <gtest/gtest.h>

namespace ostrel {
namespace {

constexpr DesktopRect barAbove{0, 28, 1280, 772};
constexpr DesktopRect barBelow{0, 0, 1280, 760};
constexpr DesktopRect secondScreen{1280, -200, 1920, 1052};

TEST(PanelPlace, IsCentredBesideTheClickAndInsideTheScreen) {
  struct Row {
    const char* of;
    DesktopRect available;
    DesktopPoint click;
    DesktopPoint place;
  };
  const Row rows[] = {
      {"below a click on the bar above", barAbove, {640, 13}, {460, 34}},
      {"below a click below the bar", barAbove, {640, 100}, {460, 106}},
      {"above a click on the bar below", barBelow, {640, 780}, {460, 254}},
      {"below the click in the very middle", barBelow, {640, 380}, {460, 260}},
      {"at the right edge", barAbove, {1270, 13}, {912, 34}},
      {"at the left edge", barAbove, {4, 13}, {8, 34}},
      {"beside a bar at the left, in the lower half", {60, 0, 1220, 800}, {30, 700}, {68, 194}},
      {"on a screen with its corner elsewhere", secondScreen, {3190, -215}, {2832, -194}},
      {"lower than its screen", {0, 0, 1280, 400}, {640, 10}, {460, 0}},
      {"wider and higher than its screen", {10, 20, 300, 30}, {200, 40}, {18, 20}},
      {"without a screen", {}, {0, 0}, {8, 0}},
  };
  for (const auto& [of, available, click, place] : rows) {
    EXPECT_EQ(panelPlace({click, available}, 360, 500), place) << of;
  }
}

TEST(PanelPlace, StaysInsideTheScreenWhereverTheClickIs) {
  for (const auto& available : {barAbove, barBelow, secondScreen}) {
    for (const int x : {-10000, -1, 0, 640, 1279, 1280, 3199, 3200, 10000}) {
      for (const int y : {-10000, -201, -200, 0, 27, 28, 400, 799, 800, 852, 10000}) {
        const auto place = panelPlace({{x, y}, available}, 360, 500);
        const bool isInside = place.x >= available.x && place.x + 360 <= available.x + available.width &&
                              place.y >= available.y && place.y + 500 <= available.y + available.height;
        EXPECT_TRUE(isInside) << x << ',' << y << " gives " << place.x << ',' << place.y;
      }
    }
  }
}

}  // namespace
}  // namespace ostrel
