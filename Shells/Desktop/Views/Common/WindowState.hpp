#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QQuickItem>

#include <limits>

namespace ostrel {

/// What the QML of every window with a frame is told of it, and may ask.
class WindowState : public QObject {
  Q_OBJECT
  QML_ANONYMOUS
  Q_PROPERTY(QSizeF room MEMBER room_ NOTIFY roomChanged)

 public:
  /// How large the window may become, in points.
  void setRoom(QSizeF room);

  /// Tells assistive tools of an item that has come or changed and that the person is to hear of at once.
  Q_INVOKABLE void announce(QQuickItem* item) const;

 signals:
  void roomChanged();

 private:
  QSizeF room_{std::numeric_limits<double>::max(), std::numeric_limits<double>::max()};
};

}  // namespace ostrel
