#pragma once

namespace ostrel {

/// In the desktop's points; the origin is the upper left corner, y grows downwards.
struct DesktopPoint {
  int x = 0;
  int y = 0;

  bool operator==(const DesktopPoint&) const = default;
};

struct DesktopRect {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;

  bool operator==(const DesktopRect&) const = default;
};

/// Where a panel is to open.
struct PanelAnchor {
  DesktopPoint click;     ///< on the status item
  DesktopRect available;  ///< of the screen around the click, without bars

  bool operator==(const PanelAnchor&) const = default;
};

/// The upper left corner of a panel of that size: centred below the click, above it where the click is in the
/// lower half of the screen, and inside the available part of the screen as far as the panel fits.
DesktopPoint panelPlace(const PanelAnchor& anchor, int width, int height);

}  // namespace ostrel
