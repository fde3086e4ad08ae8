#include "Shells/Desktop/Views/Common/WindowPlace.hpp"

#include <QScreen>
#include <QWindow>

namespace ostrel {

namespace {

/// Room for the frame of a window that is not on the screen yet, in points.
constexpr QMargins usualFrame(4, 36, 4, 4);

}  // namespace

QRect roomOf(const QWindow& window) {
  const auto frame = window.isVisible() ? window.frameMargins() : usualFrame;
  return window.screen()->availableGeometry().marginsRemoved(frame);
}

void placeWindow(QWindow& window, QSize size) {
  if (window.isVisible() && size == window.size()) return;
  const auto room = roomOf(window);
  QRect place(window.position(), size);
  if (!window.isVisible()) place.moveCenter(room.center());
  if (place.bottom() > room.bottom()) place.moveBottom(room.bottom());
  if (place.top() < room.top()) place.moveTop(room.top());
  // A window without a choice of sizes cannot be resized.
  window.setMinimumSize(size);
  window.setMaximumSize(size);
  window.setGeometry(place);
}

}  // namespace ostrel
