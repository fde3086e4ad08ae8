#include "Shells/Desktop/Views/Common/Shield.hpp"

#include <QPainter>
#include <QPainterPath>

namespace ostrel {

namespace {

/// The shapes below are in a box of this size.
constexpr QSizeF box(34, 38);

QPainterPath outline() {
  QPainterPath path(QPointF(17, 1));
  path.lineTo(32, 6);
  path.lineTo(32, 18);
  path.cubicTo(32, 27, 26, 33.5, 17, 37);
  path.cubicTo(8, 33.5, 2, 27, 2, 18);
  path.lineTo(2, 6);
  path.closeSubpath();
  return path;
}

}  // namespace

Shield::Shield(QQuickItem* parent) : QQuickPaintedItem(parent) {
  setAntialiasing(true);
  setImplicitSize(box.width(), box.height());
  for (const auto changed : {&Shield::kindChanged, &Shield::formChanged, &Shield::isMarkedChanged,
                             &Shield::fillChanged, &Shield::markChanged}) {
    connect(this, changed, this, [this] { update(); });
  }
}

void Shield::paint(QPainter* painter) {
  painter->scale(width() / box.width(), height() / box.height());
  paintBody(*painter);
  if (isMarked_) paintMark(*painter);
}

void Shield::paintBody(QPainter& painter) const {
  if (form_ == shieldform::Filled) return painter.fillPath(outline(), fill_);
  if (form_ == shieldform::HalfFilled) {
    painter.setClipRect(QRectF(0, 0, box.width() / 2, box.height()));
    painter.fillPath(outline(), fill_);
    painter.setClipping(false);
  }
  // Within the outline, so that every form is of one size.
  painter.setClipPath(outline());
  painter.strokePath(outline(), QPen(fill_, 5));
  painter.setClipping(false);
}

void Shield::paintMark(QPainter& painter) const {
  painter.setPen(QPen(mark_, 3.3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  switch (static_cast<statekind::Kind>(kind_)) {
    case statekind::Ok:
      painter.drawPolyline(QPolygonF({{10, 19}, {15, 24}, {24, 14}}));
      break;
    case statekind::Bad:
      painter.drawLine(QPointF(12, 14), QPointF(22, 24));
      painter.drawLine(QPointF(22, 14), QPointF(12, 24));
      break;
    case statekind::Warn:
    case statekind::Info:
    case statekind::Off:
      painter.drawLine(QPointF(17, 11), QPointF(17, 20.5));
      painter.setPen(Qt::NoPen);
      painter.setBrush(mark_);
      painter.drawEllipse(QPointF(17, 26.6), 2.1, 2.1);
      break;
  }
}

}  // namespace ostrel
