#include <xcb/xcb.h>

#include <QGuiApplication>
#include <QWindow>
#include <array>

#include "Platform/Desktop/Views/Taskbar.hpp"
#include "Platform/Desktop/Xcb/XcbReply.hpp"

namespace ostrel {

// Window managers take the state away whenever the window goes; the toolkit adds its own to what is there.
void keepOutOfTaskbar(QWindow& window) {
  const auto* display = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  // Platforms without a display offer the interface, too.
  auto* connection = display == nullptr ? nullptr : display->connection();
  if (connection == nullptr || window.isVisible()) return;
  static const auto state = atomOf(connection, "_NET_WM_STATE");
  static const std::array skipped = {atomOf(connection, "_NET_WM_STATE_SKIP_TASKBAR"),
                                     atomOf(connection, "_NET_WM_STATE_SKIP_PAGER")};
  xcb_change_property(connection, XCB_PROP_MODE_REPLACE, static_cast<xcb_window_t>(window.winId()), state,
                      XCB_ATOM_ATOM, 32, skipped.size(), skipped.data());
}

}  // namespace ostrel
