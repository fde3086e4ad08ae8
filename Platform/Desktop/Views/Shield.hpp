#pragma once

#include <QColor>
#include <QQuickPaintedItem>

#include "Platform/Desktop/Views/StateKind.hpp"

namespace ostrel {

/// The header's shield with the mark of a state: a check, an exclamation mark or a cross.
class Shield : public QQuickPaintedItem {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(int kind MEMBER kind_ NOTIFY kindChanged)
  Q_PROPERTY(QColor fill MEMBER fill_ NOTIFY fillChanged)
  Q_PROPERTY(QColor mark MEMBER mark_ NOTIFY markChanged)

 public:
  explicit Shield(QQuickItem* parent = nullptr);

  void paint(QPainter* painter) override;

 signals:
  void kindChanged();
  void fillChanged();
  void markChanged();

 private:
  void paintMark(QPainter& painter) const;

  int kind_ = statekind::Ok;
  QColor fill_;
  QColor mark_;
};

}  // namespace ostrel
