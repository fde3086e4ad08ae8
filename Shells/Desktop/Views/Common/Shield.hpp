#pragma once

#include <QColor>
#include <QQuickPaintedItem>

#include "Shells/Desktop/Views/Common/StateKind.hpp"

/// How a shield is drawn, by the names that QML has for it.
namespace ostrel::shieldform {

Q_NAMESPACE
QML_NAMED_ELEMENT(ShieldForm)

enum Form { Filled, HalfFilled, Outlined };
Q_ENUM_NS(Form)

}  // namespace ostrel::shieldform

namespace ostrel {

/// A header's shield, with the mark of a state where it has one: a check, an exclamation mark or a cross.
class Shield : public QQuickPaintedItem {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(int kind MEMBER kind_ NOTIFY kindChanged)
  Q_PROPERTY(int form MEMBER form_ NOTIFY formChanged)
  Q_PROPERTY(bool isMarked MEMBER isMarked_ NOTIFY isMarkedChanged)
  Q_PROPERTY(QColor fill MEMBER fill_ NOTIFY fillChanged)
  Q_PROPERTY(QColor mark MEMBER mark_ NOTIFY markChanged)

 public:
  explicit Shield(QQuickItem* parent = nullptr);

  void paint(QPainter* painter) override;

 signals:
  void kindChanged();
  void formChanged();
  void isMarkedChanged();
  void fillChanged();
  void markChanged();

 private:
  void paintBody(QPainter& painter) const;
  void paintMark(QPainter& painter) const;

  int kind_ = statekind::Ok;
  int form_ = shieldform::Filled;
  bool isMarked_ = true;
  QColor fill_;
  QColor mark_;
};

}  // namespace ostrel
