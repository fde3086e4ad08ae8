#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "OstrelAgent/Status/Verdict.hpp"
#include "Platform/Appearance.hpp"
#include "Platform/Canvas.hpp"

namespace ostrel {

/// The mark in the icon's corner: all well, needs attention or not reported, not protected.
enum class MenuBarBadge { dot, square, octagon };

/// The symbols of a verdict, for menu bars of different abilities.
struct VerdictSymbols {
  MenuBarBadge badge = MenuBarBadge::square;
  std::string_view symbol;  ///< system symbol, used without a glyph image
  std::string_view emoji;   ///< used without a system symbol, too

  static VerdictSymbols of(const ProtectionVerdict& verdict);

  bool operator==(const VerdictSymbols&) const = default;
};

/// The colours for a light or a dark menu bar.
struct MenuBarPalette {
  enum class Case { light, dark };

  Case kind = Case::light;

  /// The palette for a menu bar; the light one while the appearance is unknown.
  static MenuBarPalette matching(std::optional<Appearance> appearance);

  CanvasColor color(MenuBarBadge badge) const;

  /// The glyph image of the bundle's resources.
  std::string_view glyphName() const;

  bool operator==(const MenuBarPalette&) const = default;
};

namespace menubarpicture {
/// The glyph image with its badge.
struct Glyph {
  MenuBarBadge badge = MenuBarBadge::square;
  MenuBarPalette palette;
  bool operator==(const Glyph&) const = default;
};
struct Symbol {
  std::string_view name;
  bool operator==(const Symbol&) const = default;
};
/// A title and the badge that replaces it when no font has the emoji.
struct Title {
  std::string_view emoji;
  MenuBarBadge badge = MenuBarBadge::square;
  MenuBarPalette palette = {};
  bool operator==(const Title&) const = default;
};
}  // namespace menubarpicture

using MenuBarPicture = std::variant<menubarpicture::Glyph, menubarpicture::Symbol, menubarpicture::Title>;

/// The image and text of the status item.
struct MenuBarIcon {
  MenuBarPicture picture;
  std::string text;  ///< tooltip and accessible label

  /// The best of glyph, symbol and emoji that the menu bar can show.
  static MenuBarIcon of(const ProtectionVerdict& verdict, MenuBarPalette palette, bool hasGlyph,
                        bool hasSymbol);

  bool operator==(const MenuBarIcon&) const = default;
};

/// The outline of a badge in its rectangle.
CanvasPath badgePath(MenuBarBadge badge, const CanvasRect& rect);

/// Draws the menu-bar image for a glyph of that size in points: the tinted glyph with the badge in its lower
/// right corner.
void drawMenuBarImage(Canvas& canvas, double width, double height, MenuBarBadge badge,
                      MenuBarPalette palette);

/// Draws a title as a square image of that many points, for menu bars without text: the emoji, or the badge
/// alone when no font has it.
void drawMenuBarTitle(Canvas& canvas, double side, const menubarpicture::Title& title);

}  // namespace ostrel
