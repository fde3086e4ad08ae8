#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QQuickItem>

#include <limits>

namespace ostrel {

/// What every window with a frame offers to its QML.
class WindowState : public QObject {
  Q_OBJECT
  QML_ANONYMOUS
  Q_PROPERTY(QSizeF room MEMBER room_ NOTIFY roomChanged)

 public:
  /// How large the window may become, in points.
  void setRoom(QSizeF room);

  /// Has assistive tools read an item at once, since it has appeared or changed.
  Q_INVOKABLE void announce(QQuickItem* item) const;

 signals:
  void roomChanged();

 private:
  QSizeF room_{std::numeric_limits<double>::max(), std::numeric_limits<double>::max()};
};

}  // namespace ostrel
