#include "Platform/Desktop/Views/WindowState.hpp"

#include <QAccessible>

#include "Platform/Desktop/Views/Change.hpp"

namespace ostrel {

void WindowState::setRoom(QSizeF room) { change(*this, room_, room, &WindowState::roomChanged); }

void WindowState::announce(QQuickItem* item) const {
  QAccessibleEvent event(item, QAccessible::Alert);
  QAccessible::updateAccessibility(&event);
}

}  // namespace ostrel
