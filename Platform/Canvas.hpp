#pragma once

#include <cstdint>
#include <string_view>
#include <variant>
#include <vector>

namespace ostrel {

/// A point in points; the origin is the lower left corner, y grows upwards.
struct CanvasPoint {
  double x = 0;
  double y = 0;

  bool operator==(const CanvasPoint&) const = default;
};

/// A rectangle in points; x and y are its lower left corner.
struct CanvasRect {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;

  CanvasPoint center() const { return {x + width / 2, y + height / 2}; }

  /// The rectangle with each side moved inwards.
  CanvasRect inset(double by) const { return {x + by, y + by, width - 2 * by, height - 2 * by}; }

  bool operator==(const CanvasRect&) const = default;
};

/// A colour in sRGB.
struct CanvasColor {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;

  bool operator==(const CanvasColor&) const = default;
};

/// Outlines of the shapes that the program draws.
namespace canvaspath {
struct Oval {
  CanvasRect rect;
  bool operator==(const Oval&) const = default;
};
struct RoundedRect {
  CanvasRect rect;
  double radius = 0;
  bool operator==(const RoundedRect&) const = default;
};
/// Corners in order; the last is joined to the first.
struct Polygon {
  std::vector<CanvasPoint> corners;
  bool operator==(const Polygon&) const = default;
};
}  // namespace canvaspath

using CanvasPath = std::variant<canvaspath::Oval, canvaspath::RoundedRect, canvaspath::Polygon>;

/// How a shape is combined with the image below it (NSCompositingOperation).
enum class Compositing { sourceOver, sourceAtop, destinationOut };

/// An initially transparent image to draw on (NSImage with its graphics context).
class Canvas {
 public:
  virtual ~Canvas() = default;

  /// Draws the glyph image over the rectangle, by source-over.
  virtual void drawGlyph(const CanvasRect& rect, double opacity) = 0;

  virtual void fillRect(const CanvasRect& rect, CanvasColor color, Compositing compositing) = 0;
  virtual void fill(const CanvasPath& path, CanvasColor color, Compositing compositing) = 0;

  /// Strokes the outline, half of the width on either side of it.
  virtual void stroke(const CanvasPath& path, double lineWidth, CanvasColor color,
                      Compositing compositing) = 0;

  /// Draws a text as large as fits into the rectangle; the colour is for glyphs without colours of their own.
  /// False when no font has the text; then nothing is drawn.
  [[nodiscard]] virtual bool drawText(std::string_view text, const CanvasRect& rect, CanvasColor color) = 0;
};

}  // namespace ostrel
