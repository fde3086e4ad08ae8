#include <xcb/xcb.h>

#include <QGuiApplication>
#include <QWindow>
#include <array>
#include <cstdlib>
#include <memory>
#include <string_view>

#include "Platform/Desktop/Views/Taskbar.hpp"

namespace ostrel {

namespace {

xcb_atom_t atom(xcb_connection_t* connection, std::string_view name) {
  const auto request = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
  const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
      xcb_intern_atom_reply(connection, request, nullptr), &std::free);
  return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

}  // namespace

// Window managers take the state away whenever the window goes; the toolkit adds its own to what is there.
void keepOutOfTaskbar(QWindow& window) {
  const auto* display = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  // Platforms without a display offer the interface, too.
  auto* connection = display == nullptr ? nullptr : display->connection();
  if (connection == nullptr || window.isVisible()) return;
  static const auto state = atom(connection, "_NET_WM_STATE");
  static const std::array skipped = {atom(connection, "_NET_WM_STATE_SKIP_TASKBAR"),
                                     atom(connection, "_NET_WM_STATE_SKIP_PAGER")};
  xcb_change_property(connection, XCB_PROP_MODE_REPLACE, static_cast<xcb_window_t>(window.winId()), state,
                      XCB_ATOM_ATOM, 32, skipped.size(), skipped.data());
}

}  // namespace ostrel
