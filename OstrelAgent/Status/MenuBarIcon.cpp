#include "OstrelAgent/Status/MenuBarIcon.hpp"

#include <cmath>
#include <numbers>
#include <vector>

namespace ostrel {

namespace {

constexpr std::string_view shieldEmoji = "\U0001F6E1";
constexpr std::string_view warningEmoji = "\u26A0\uFE0F";
constexpr CanvasColor black{0, 0, 0};
constexpr CanvasColor white{255, 255, 255};

/// Degrees count counter-clockwise from the right.
CanvasPoint onCircle(CanvasPoint center, double radius, double degrees) {
  const double angle = degrees * std::numbers::pi / 180;
  return {center.x + radius * std::cos(angle), center.y + radius * std::sin(angle)};
}

/// The mark cut out of a badge: an exclamation mark or a cross.
std::vector<CanvasPath> badgeMark(MenuBarBadge badge, const CanvasRect& rect) {
  const double width = rect.width;
  const auto [x, y] = rect.center();
  switch (badge) {
    case MenuBarBadge::dot:
      return {};
    case MenuBarBadge::square: {
      // In a glyph of 18 points bar and dot start on whole points.
      const double thickness = 0.16 * width;
      const double half = 0.347 * width;
      const double gapTop = -0.08 * width;
      const CanvasRect bar{x - thickness / 2, y + gapTop, thickness, half - gapTop};
      const CanvasRect point{x - thickness / 2, y - half, thickness, thickness};
      return {canvaspath::RoundedRect{bar, thickness / 3}, canvaspath::RoundedRect{point, thickness / 3}};
    }
    case MenuBarBadge::octagon:
      break;
  }
  // Twelve corners: an end of each arm, then the inner corner before the next arm.
  const double arm = 0.32 * width;
  const double half = 0.066 * width;
  canvaspath::Polygon cross;
  for (int quarter = 0; quarter < 4; ++quarter) {
    const double along = 45.0 + 90.0 * quarter;
    const double spread = std::atan2(half, arm) * 180 / std::numbers::pi;
    cross.corners.push_back(onCircle({x, y}, std::hypot(arm, half), along - spread));
    cross.corners.push_back(onCircle({x, y}, std::hypot(arm, half), along + spread));
    cross.corners.push_back(onCircle({x, y}, std::numbers::sqrt2 * half, along + 45));
  }
  return {cross};
}

void drawBadge(Canvas& canvas, const CanvasRect& rect, MenuBarBadge badge, MenuBarPalette palette) {
  canvas.fill(badgePath(badge, rect), palette.color(badge), Compositing::sourceOver);
  for (const auto& part : badgeMark(badge, rect)) canvas.fill(part, black, Compositing::destinationOut);
}

}  // namespace

VerdictSymbols VerdictSymbols::of(const ProtectionVerdict& verdict) {
  using enum ProtectionVerdict::Case;
  switch (verdict.kind) {
    case isProtected:
      return {MenuBarBadge::dot, "checkmark.shield.fill", shieldEmoji};
    case protectedWithOff:
      return {MenuBarBadge::dot, "shield", shieldEmoji};
    case notProtected:
      return {MenuBarBadge::octagon, "exclamationmark.shield.fill", warningEmoji};
    case needsAttention:
    case notReported:
      break;
  }
  return {MenuBarBadge::square, "exclamationmark.triangle.fill", warningEmoji};
}

MenuBarPalette MenuBarPalette::matching(std::optional<Appearance> appearance) {
  return {appearance == Appearance::dark ? Case::dark : Case::light};
}

CanvasColor MenuBarPalette::color(MenuBarBadge badge) const {
  const bool isDark = kind == Case::dark;
  switch (badge) {
    case MenuBarBadge::dot:
      return isDark ? CanvasColor{0x4C, 0xBF, 0x7A} : CanvasColor{0x1E, 0x7A, 0x46};
    case MenuBarBadge::square:
      return isDark ? CanvasColor{0xE3, 0xA8, 0x3A} : CanvasColor{0xA3, 0x61, 0x0A};
    case MenuBarBadge::octagon:
      return isDark ? CanvasColor{0xE2, 0x67, 0x5D} : CanvasColor{0xB5, 0x35, 0x2C};
  }
  return {};
}

std::string_view MenuBarPalette::glyphName() const {
  return kind == Case::dark ? "ostrel-menubar-dark" : "ostrel-menubar-light";
}

MenuBarIcon MenuBarIcon::of(const ProtectionVerdict& verdict, MenuBarPalette palette, bool hasGlyph,
                            bool hasSymbol) {
  const auto sign = VerdictSymbols::of(verdict);
  MenuBarIcon icon{menubarpicture::Title{sign.emoji, sign.badge, palette}, verdict.menuBarDescription()};
  if (hasSymbol) icon.picture = menubarpicture::Symbol{sign.symbol};
  if (hasGlyph) icon.picture = menubarpicture::Glyph{sign.badge, palette};
  return icon;
}

CanvasPath badgePath(MenuBarBadge badge, const CanvasRect& rect) {
  const double width = rect.width;
  switch (badge) {
    case MenuBarBadge::dot:
      return canvaspath::Oval{rect.inset(0.03 * width)};
    case MenuBarBadge::square:
      return canvaspath::RoundedRect{rect.inset(0.05 * width), 0.22 * width};
    case MenuBarBadge::octagon:
      break;
  }
  canvaspath::Polygon octagon;
  for (int corner = 0; corner < 8; ++corner) {
    octagon.corners.push_back(onCircle(rect.center(), 0.47 * width, 22.5 + 45.0 * corner));
  }
  return octagon;
}

void drawMenuBarImage(Canvas& canvas, double width, double height, MenuBarBadge badge,
                      MenuBarPalette palette) {
  const CanvasRect whole{0, 0, width, height};
  // The glyph is dimmed while there is a warning.
  canvas.drawGlyph(whole, badge == MenuBarBadge::dot ? 0.85 : 0.4);
  const auto tint = palette.kind == MenuBarPalette::Case::dark ? white : black;
  canvas.fillRect(whole, tint, Compositing::sourceAtop);

  const double unit = height / 18;
  const double size = 7.5 * unit;
  const CanvasPoint center{width - 0.48 * size, 0.48 * size};
  const CanvasRect rect{center.x - size / 2, center.y - size / 2, size, size};
  const auto path = badgePath(badge, rect);
  // A gap around the badge keeps it apart from the glyph.
  canvas.fill(path, black, Compositing::destinationOut);
  canvas.stroke(path, 3.2 * unit, black, Compositing::destinationOut);
  drawBadge(canvas, rect, badge, palette);
}

void drawMenuBarTitle(Canvas& canvas, double side, const menubarpicture::Title& title) {
  const CanvasRect whole{0, 0, side, side};
  if (canvas.drawText(title.emoji, whole, title.palette.color(title.badge))) return;
  drawBadge(canvas, whole, title.badge, title.palette);
}

}  // namespace ostrel
