#include "Shells/Desktop/Views/Common/StateMark.hpp"

#include <QPainter>
#include <QPainterPath>

#include <cmath>
#include <numbers>

namespace ostrel {

namespace {

/// The shapes below are in squares of these sizes.
constexpr double markBox = 16;
constexpr double tickBox = 10;
constexpr QPointF middle(markBox / 2, markBox / 2);

QPen pen(const QColor& color, double width) {
  return {color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

void fill(QPainter& painter, const QColor& color) {
  painter.setPen(Qt::NoPen);
  painter.setBrush(color);
}

void paintDot(QPainter& painter, const QColor& color) {
  fill(painter, color);
  painter.drawEllipse(middle, 4, 4);
}

void paintRing(QPainter& painter, const QColor& color) {
  painter.setPen(pen(color, 1.5));
  painter.setBrush(Qt::NoBrush);
  painter.drawEllipse(middle, 3.5, 3.5);
}

void paintSquare(QPainter& painter, const QColor& color, const QColor& sign) {
  fill(painter, color);
  painter.drawRoundedRect(QRectF(1.5, 1.5, 13, 13), 3, 3);
  painter.setPen(pen(sign, 1.8));
  painter.drawLine(QPointF(8, 4.4), QPointF(8, 8.6));
  fill(painter, sign);
  painter.drawEllipse(QPointF(8, 11.5), 1.1, 1.1);
}

QPolygonF octagon(double radius) {
  QPolygonF corners;
  for (int i = 0; i < 8; ++i) {
    const double angle = (22.5 + 45 * i) * std::numbers::pi / 180;
    corners.append(middle + radius * QPointF(std::cos(angle), std::sin(angle)));
  }
  return corners;
}

void paintOctagon(QPainter& painter, const QColor& color, const QColor& sign) {
  fill(painter, color);
  painter.drawPolygon(octagon(7.2));
  painter.setPen(pen(sign, 1.7));
  painter.drawLine(QPointF(5.6, 5.6), QPointF(10.4, 10.4));
  painter.drawLine(QPointF(10.4, 5.6), QPointF(5.6, 10.4));
}

}  // namespace

StateMark::StateMark(QQuickItem* parent) : QQuickPaintedItem(parent) {
  setAntialiasing(true);
  setImplicitSize(markBox, markBox);
  for (const auto changed : {&StateMark::kindChanged, &StateMark::colorChanged, &StateMark::groundChanged}) {
    connect(this, changed, this, [this] { update(); });
  }
}

void StateMark::paint(QPainter* painter) {
  painter->scale(width() / markBox, height() / markBox);
  switch (static_cast<statekind::Kind>(kind_)) {
    case statekind::Ok:
      return paintDot(*painter, color_);
    case statekind::Warn:
      return paintSquare(*painter, color_, ground_);
    case statekind::Bad:
      return paintOctagon(*painter, color_, ground_);
    case statekind::Info:
    case statekind::Off:
      return paintRing(*painter, color_);
  }
}

Tick::Tick(QQuickItem* parent) : QQuickPaintedItem(parent) {
  setAntialiasing(true);
  setImplicitSize(tickBox, tickBox);
  for (const auto changed : {&Tick::isCrossChanged, &Tick::colorChanged}) {
    connect(this, changed, this, [this] { update(); });
  }
}

void Tick::paint(QPainter* painter) {
  painter->scale(width() / tickBox, height() / tickBox);
  painter->setPen(pen(color_, 1.6));
  if (!isCross_) return painter->drawPolyline(QPolygonF({{1.5, 5.3}, {4, 7.8}, {8.5, 2.3}}));
  painter->drawLine(QPointF(2, 2), QPointF(8, 8));
  painter->drawLine(QPointF(8, 2), QPointF(2, 8));
}

}  // namespace ostrel
