#pragma once

#include <QImage>
#include <QPainter>
#include <QTransform>

#include "Platform/Canvas.hpp"

namespace ostrel {

/// Draws into an image of the toolkit, one pixel a point. The image is complete once the canvas is destroyed.
class PainterCanvas : public Canvas {
 public:
  /// The image has an alpha channel and outlives the canvas.
  explicit PainterCanvas(QImage& image, QImage glyph = {});

  void drawGlyph(const CanvasRect& rect, double opacity) override;
  void fillRect(const CanvasRect& rect, CanvasColor color, Compositing compositing) override;
  void fill(const CanvasPath& path, CanvasColor color, Compositing compositing) override;
  void stroke(const CanvasPath& path, double lineWidth, CanvasColor color, Compositing compositing) override;
  [[nodiscard]] bool drawText(std::string_view text, const CanvasRect& rect, CanvasColor color) override;

 private:
  QImage glyph_;
  QTransform flip_;  ///< to the image's pixels, which are counted from above
  QPainter painter_;
};

}  // namespace ostrel
