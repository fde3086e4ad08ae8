#include "Shells/Desktop/Shell/PainterCanvas.hpp"

#include <QColor>
#include <QFont>
#include <QFontMetricsF>
#include <QPainterPath>
#include <QPen>
#include <QPolygonF>
#include <QRectF>
#include <QString>
#include <algorithm>
#include <utility>
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

bool hasText(const QFontMetricsF& font, const QString& text) {
  const auto characters = text.toUcs4();
  return std::ranges::all_of(characters, [&](char32_t character) {
    // Variation selectors, which are non-spacing marks, have no glyph of their own.
    return QChar::category(character) == QChar::Mark_NonSpacing || font.inFontUcs4(character);
  });
}

}  // namespace

PainterCanvas::PainterCanvas(QImage& image, QImage glyph)
    : glyph_(std::move(glyph)), flip_(1, 0, 0, -1, 0, image.height()), painter_(&image) {
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

bool PainterCanvas::drawText(std::string_view text, const CanvasRect& rect, CanvasColor color) {
  const auto string = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
  const auto target = flip_.mapRect(rectOf(rect));
  QFont font;
  font.setPixelSize(std::max(1, static_cast<int>(target.height())));
  const QFontMetricsF metrics(font);
  const auto ink = metrics.tightBoundingRect(string);
  if (ink.isEmpty() || !hasText(metrics, string)) return false;
  const double scale = std::min(target.width() / ink.width(), target.height() / ink.height());
  painter_.save();
  painter_.setCompositionMode(QPainter::CompositionMode_SourceOver);
  painter_.translate(target.center());
  painter_.scale(scale, scale);
  painter_.setFont(font);
  painter_.setPen(colorOf(color));
  painter_.drawText(-ink.center(), string);
  painter_.restore();
  return true;
}

}  // namespace ostrel
