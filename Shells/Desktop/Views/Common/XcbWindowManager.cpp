#include <xcb/xcb.h>

#include <QGuiApplication>
#include <QWindow>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

#include "Shells/Desktop/Views/Common/WindowManager.hpp"

namespace ostrel {

namespace {

struct FreeReply {
  void operator()(void* reply) const { std::free(reply); }
};

template <typename Reply>
std::unique_ptr<Reply, FreeReply> owned(Reply* reply) {
  return std::unique_ptr<Reply, FreeReply>(reply);
}

/// Null on other platforms than X11.
xcb_connection_t* x11Connection() {
  const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  // The platform "offscreen" has the interface as well, with a null connection.
  return x11 == nullptr ? nullptr : x11->connection();
}

xcb_atom_t atomOf(xcb_connection_t* connection, const std::string& name) {
  const auto cookie = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
  const auto reply = owned(xcb_intern_atom_reply(connection, cookie, nullptr));
  return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

/// The number of the screen that DISPLAY names, 0 when it names none.
int screenNumber() {
  char* host = nullptr;
  int display = 0;
  int screen = 0;
  if (xcb_parse_display(nullptr, &host, &display, &screen) == 0) return 0;
  std::free(host);
  return screen;
}

}  // namespace

// Window managers remove the state when a window is hidden; the toolkit adds its own states to these.
void keepOutOfTaskbar(QWindow& window) {
  auto* connection = x11Connection();
  if (connection == nullptr || window.isVisible()) return;
  static const auto state = atomOf(connection, "_NET_WM_STATE");
  static const std::array skipped = {atomOf(connection, "_NET_WM_STATE_SKIP_TASKBAR"),
                                     atomOf(connection, "_NET_WM_STATE_SKIP_PAGER")};
  xcb_change_property(connection, XCB_PROP_MODE_REPLACE, static_cast<xcb_window_t>(window.winId()), state,
                      XCB_ATOM_ATOM, 32, skipped.size(), skipped.data());
}

// A compositor owns a selection that is named after its screen.
bool blendsWindows() {
  auto* connection = x11Connection();
  if (connection == nullptr) return true;
  static const auto compositor = atomOf(connection, "_NET_WM_CM_S" + std::to_string(screenNumber()));
  const auto cookie = xcb_get_selection_owner(connection, compositor);
  const auto reply = owned(xcb_get_selection_owner_reply(connection, cookie, nullptr));
  return reply && reply->owner != XCB_NONE;
}

}  // namespace ostrel
