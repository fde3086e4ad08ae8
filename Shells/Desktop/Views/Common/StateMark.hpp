#pragma once

#include <QColor>
#include <QQuickPaintedItem>

#include "Shells/Desktop/Views/Common/StateKind.hpp"

namespace ostrel {

/// The mark of a state. Each state has a shape of its own, so that colour is not needed: a dot, a square with
/// an exclamation mark, an octagon with a cross, a ring.
class StateMark : public QQuickPaintedItem {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(int kind MEMBER kind_ NOTIFY kindChanged)
  Q_PROPERTY(QColor color MEMBER color_ NOTIFY colorChanged)
  Q_PROPERTY(QColor ground MEMBER ground_ NOTIFY groundChanged)

 public:
  explicit StateMark(QQuickItem* parent = nullptr);

  void paint(QPainter* painter) override;

 signals:
  void kindChanged();
  void colorChanged();
  void groundChanged();

 private:
  int kind_ = statekind::Off;
  QColor color_;
  QColor ground_;  ///< what shows through the sign in a mark
};

/// A small sign of how something ended: a tick, or a cross.
class Tick : public QQuickPaintedItem {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(bool isCross MEMBER isCross_ NOTIFY isCrossChanged)
  Q_PROPERTY(QColor color MEMBER color_ NOTIFY colorChanged)

 public:
  explicit Tick(QQuickItem* parent = nullptr);

  void paint(QPainter* painter) override;

 signals:
  void isCrossChanged();
  void colorChanged();

 private:
  bool isCross_ = false;
  QColor color_;
};

}  // namespace ostrel
