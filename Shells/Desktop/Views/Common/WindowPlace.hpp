#pragma once

#include <QRect>

class QWindow;

namespace ostrel {

/// The part of the window's screen that what it holds may take, in points.
QRect roomOf(const QWindow& window);

/// Gives the window a size that the user cannot change. It is put into the middle of the screen; one that is
/// shown stays where it is, but on the screen.
void placeWindow(QWindow& window, QSize size);

}  // namespace ostrel
