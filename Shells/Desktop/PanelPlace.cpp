#include "Shells/Desktop/PanelPlace.hpp"

#include <algorithm>

namespace ostrel {

namespace {

constexpr int gap = 6;     // between a bar and the panel
constexpr int margin = 8;  // at the sides of the screen

/// The start of a span, moved so that the span lies inside another; both start together where it is too long.
int within(int start, int length, int from, int room) {
  return std::max(from, std::min(start, from + room - length));
}

}  // namespace

DesktopPoint panelPlace(const PanelAnchor& anchor, int width, int height) {
  const auto& [click, available] = anchor;
  const bool opensUpwards = click.y > available.y + available.height / 2;
  const int below = std::max(click.y, available.y) + gap;
  const int above = std::min(click.y, available.y + available.height) - gap - height;
  return {within(click.x - width / 2, width, available.x + margin, available.width - 2 * margin),
          within(opensUpwards ? above : below, height, available.y, available.height)};
}

}  // namespace ostrel
