#include "Shells/Desktop/Views/Common/RoundMark.hpp"

#include <QPainter>
#include <QPainterPath>

namespace ostrel {

namespace {

/// The shapes below are in a square of this size.
constexpr double box = 18;
constexpr QPointF middle(box / 2, box / 2);

QPen pen(const QColor& color, double width) {
  return {color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

void paintDisc(QPainter& painter, const QColor& color) {
  painter.setPen(Qt::NoPen);
  painter.setBrush(color);
  painter.drawEllipse(middle, 9, 9);
}

void paintRing(QPainter& painter, const QColor& color) {
  painter.setPen(pen(color, 1.6));
  painter.setBrush(Qt::NoBrush);
  painter.drawEllipse(middle, 8, 8);
}

void paintDot(QPainter& painter, const QColor& color, double y) {
  painter.setPen(Qt::NoPen);
  painter.setBrush(color);
  painter.drawEllipse(QPointF(9, y), 1.15, 1.15);
}

void paintQuestionMark(QPainter& painter, const QColor& color) {
  QPainterPath path(QPointF(6.7, 7));
  path.cubicTo(6.7, 3.9, 11.4, 3.9, 11.4, 7);
  path.cubicTo(11.4, 8.9, 9, 8.8, 9, 10.7);
  painter.setBrush(Qt::NoBrush);
  painter.strokePath(path, pen(color, 1.6));
  paintDot(painter, color, 13.3);
}

}  // namespace

RoundMark::RoundMark(QQuickItem* parent) : QQuickPaintedItem(parent) {
  setAntialiasing(true);
  setImplicitSize(box, box);
  for (const auto changed : {&RoundMark::kindChanged, &RoundMark::colorChanged, &RoundMark::groundChanged}) {
    connect(this, changed, this, [this] { update(); });
  }
}

void RoundMark::paint(QPainter* painter) {
  painter->scale(width() / box, height() / box);
  switch (static_cast<statekind::Kind>(kind_)) {
    case statekind::Ok:
      paintDisc(*painter, color_);
      painter->setPen(pen(ground_, 1.9));
      painter->drawPolyline(QPolygonF({{5.2, 9.4}, {7.9, 12.1}, {12.8, 6.3}}));
      break;
    case statekind::Warn:
    case statekind::Bad:
      paintDisc(*painter, color_);
      painter->setPen(pen(ground_, 1.9));
      painter->drawLine(QPointF(9, 4.8), QPointF(9, 9.6));
      paintDot(*painter, ground_, 12.9);
      break;
    case statekind::Info:
      paintRing(*painter, color_);
      painter->drawPolyline(QPolygonF({{9, 4.6}, {9, 9}, {12, 10.8}}));
      break;
    case statekind::Off:
      paintRing(*painter, color_);
      paintQuestionMark(*painter, color_);
      break;
  }
}

}  // namespace ostrel
