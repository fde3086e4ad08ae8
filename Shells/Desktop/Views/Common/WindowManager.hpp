#pragma once

class QWindow;

namespace ostrel {

/// Asks the window manager to leave the window out of taskbar and pager, on X11. Call it before each time
/// that the window is shown.
void keepOutOfTaskbar(QWindow& window);

/// Whether a compositor blends windows with those behind them; true where that cannot be asked.
bool blendsWindows();

}  // namespace ostrel
