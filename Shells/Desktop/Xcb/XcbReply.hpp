#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>

namespace ostrel {

struct FreeReply {
  void operator()(void* reply) const { std::free(reply); }
};

/// The answer of the display to a request; null when the request has failed.
template <typename Reply>
std::unique_ptr<Reply, FreeReply> owned(Reply* reply) {
  return std::unique_ptr<Reply, FreeReply>(reply);
}

/// The number of the screen in the display's name; the first's when the name has none.
inline int screenNumber() {
  char* host = nullptr;
  int display = 0;
  int screen = 0;
  if (xcb_parse_display(nullptr, &host, &display, &screen) == 0) return 0;
  std::free(host);
  return screen;
}

/// The display's number for a name, or none.
inline xcb_atom_t atomOf(xcb_connection_t* connection, std::string_view name) {
  const auto cookie = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
  const auto reply = owned(xcb_intern_atom_reply(connection, cookie, nullptr));
  return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

}  // namespace ostrel
