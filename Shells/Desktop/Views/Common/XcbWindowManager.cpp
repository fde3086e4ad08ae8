#include <xcb/xcb.h>

#include <QGuiApplication>
#include <QWindow>
#include <array>
#include <string>

#include "Shells/Desktop/Views/Common/WindowManager.hpp"
#include "Shells/Desktop/Xcb/XcbReply.hpp"

namespace ostrel {

namespace {

/// Null where the platform has no such display.
xcb_connection_t* connectionOfDisplay() {
  const auto* display = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  // Platforms without a display offer the interface, too.
  return display == nullptr ? nullptr : display->connection();
}

}  // namespace

// Window managers take the state away whenever the window goes; the toolkit adds its own to what is there.
void keepOutOfTaskbar(QWindow& window) {
  auto* connection = connectionOfDisplay();
  if (connection == nullptr || window.isVisible()) return;
  static const auto state = atomOf(connection, "_NET_WM_STATE");
  static const std::array skipped = {atomOf(connection, "_NET_WM_STATE_SKIP_TASKBAR"),
                                     atomOf(connection, "_NET_WM_STATE_SKIP_PAGER")};
  xcb_change_property(connection, XCB_PROP_MODE_REPLACE, static_cast<xcb_window_t>(window.winId()), state,
                      XCB_ATOM_ATOM, 32, skipped.size(), skipped.data());
}

bool blendsWindows() {
  auto* connection = connectionOfDisplay();
  if (connection == nullptr) return true;
  static const auto compositor = atomOf(connection, "_NET_WM_CM_S" + std::to_string(screenNumber()));
  const auto cookie = xcb_get_selection_owner(connection, compositor);
  const auto reply = owned(xcb_get_selection_owner_reply(connection, cookie, nullptr));
  return reply && reply->owner != XCB_NONE;
}

}  // namespace ostrel
