#pragma once

class QWindow;

namespace ostrel {

/// Asks the desktop to list the window neither in its taskbar nor in its pager, where the display can be
/// asked. Call it before each time that the window is shown.
void keepOutOfTaskbar(QWindow& window);

/// Whether the desktop blends windows with what is behind them, as far as the display tells.
bool blendsWindows();

}  // namespace ostrel
