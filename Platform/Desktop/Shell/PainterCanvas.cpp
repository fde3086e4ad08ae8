#include "Platform/Desktop/Shell/PainterCanvas.hpp"

#include <QColor>
#include <QPainterPath>
#include <QPen>
#include <QPolygonF>
#include <QRectF>
#include <variant>

namespace ostrel {

namespace {

QRectF rectOf(const CanvasRect& rect) { return {rect.x, rect.y, rect.width, rect.height}; }

QColor colorOf(CanvasColor color) { return {color.red, color.green, color.blue}; }

QPainter::CompositionMode modeOf(Compositing compositing) {
  switch (compositing) {
    case Compositing::sourceOver:
      return QPainter::CompositionMode_SourceOver;
    case Compositing::sourceAtop:
      return QPainter::CompositionMode_SourceAtop;
    case Compositing::destinationOut:
      return QPainter::CompositionMode_DestinationOut;
  }
  return QPainter::CompositionMode_SourceOver;
}

/// Adds an outline to a path.
struct Outline {
  QPainterPath& path;

  void operator()(const canvaspath::Oval& oval) const { path.addEllipse(rectOf(oval.rect)); }
  void operator()(const canvaspath::RoundedRect& rounded) const {
    path.addRoundedRect(rectOf(rounded.rect), rounded.radius, rounded.radius);
  }
  void operator()(const canvaspath::Polygon& polygon) const {
    QPolygonF corners;
    for (const auto& corner : polygon.corners) corners << QPointF(corner.x, corner.y);
    path.addPolygon(corners);
    path.closeSubpath();
  }
};

QPainterPath pathOf(const CanvasPath& path) {
  QPainterPath result;
  std::visit(Outline{result}, path);
  return result;
}

}  // namespace

PainterCanvas::PainterCanvas(QImage& image, const QImage& glyph)
    : glyph_(glyph), flip_(1, 0, 0, -1, 0, image.height()), painter_(&image) {
  painter_.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
}

void PainterCanvas::drawGlyph(const CanvasRect& rect, double opacity) {
  painter_.setCompositionMode(QPainter::CompositionMode_SourceOver);
  painter_.setOpacity(opacity);
  painter_.drawImage(flip_.mapRect(rectOf(rect)), glyph_);
  painter_.setOpacity(1);
}

void PainterCanvas::fillRect(const CanvasRect& rect, CanvasColor color, Compositing compositing) {
  painter_.setCompositionMode(modeOf(compositing));
  painter_.fillRect(flip_.mapRect(rectOf(rect)), colorOf(color));
}

void PainterCanvas::fill(const CanvasPath& path, CanvasColor color, Compositing compositing) {
  painter_.setCompositionMode(modeOf(compositing));
  painter_.fillPath(flip_.map(pathOf(path)), colorOf(color));
}

void PainterCanvas::stroke(const CanvasPath& path, double lineWidth, CanvasColor color,
                           Compositing compositing) {
  painter_.setCompositionMode(modeOf(compositing));
  painter_.strokePath(flip_.map(pathOf(path)),
                      QPen(colorOf(color), lineWidth, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
}

}  // namespace ostrel
