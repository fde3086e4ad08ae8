#pragma once

#include <QColor>
#include <QQuickPaintedItem>

#include "Shells/Desktop/Views/Common/StateKind.hpp"

namespace ostrel {

/// A small round mark: a check in a disc for what is done, an exclamation mark for what is to be done, a
/// clock for what is waited for, a question mark for what is not known.
class RoundMark : public QQuickPaintedItem {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(int kind MEMBER kind_ NOTIFY kindChanged)
  Q_PROPERTY(QColor color MEMBER color_ NOTIFY colorChanged)
  Q_PROPERTY(QColor ground MEMBER ground_ NOTIFY groundChanged)

 public:
  explicit RoundMark(QQuickItem* parent = nullptr);

  void paint(QPainter* painter) override;

 signals:
  void kindChanged();
  void colorChanged();
  void groundChanged();

 private:
  int kind_ = statekind::Off;
  QColor color_;
  QColor ground_;  ///< of the mark in a disc
};

}  // namespace ostrel
