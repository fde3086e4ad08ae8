#include "Shells/Desktop/Views/Common/WindowState.hpp"

#include <QAccessible>

#include "Shells/Desktop/Views/Common/Change.hpp"

namespace ostrel {

void WindowState::setRoom(QSizeF room) { change(*this, room_, room, &WindowState::roomChanged); }

void WindowState::announce(QQuickItem* item) const {
  QAccessibleEvent event(item, QAccessible::Alert);
  QAccessible::updateAccessibility(&event);
}

}  // namespace ostrel
