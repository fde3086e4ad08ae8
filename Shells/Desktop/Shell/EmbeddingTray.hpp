#pragma once

#include <xcb/xcb.h>

#include <optional>

#include "Shells/Desktop/Xcb/XcbReply.hpp"

namespace ostrel {

/// How a window's pixels are kept.
struct WindowVisual {
  std::uint8_t depth = 0;
  xcb_visualid_t id = XCB_NONE;

  bool hasAlpha() const { return depth == 32; }
};

/// The tray that embeds windows, if there is one: the owner of a selection of the display's.
class EmbeddingTray {
 public:
  /// Nothing where the display's pixels are kept unlike those of the toolkit's images.
  [[nodiscard]] static std::optional<EmbeddingTray> of(xcb_connection_t* connection);

  const xcb_screen_t& screen() const { return *screen_; }
  xcb_atom_t atom(std::string_view name) const { return atomOf(connection_, name); }

  /// The tray's window, or none. The display tells of its end from then on.
  xcb_window_t window() const;

  /// What the tray asks its icons to have, as far as it is of use; else what every window can have.
  WindowVisual visualFor(xcb_window_t tray) const;

  /// Asks the tray to embed a window, without waiting.
  void requestDock(xcb_window_t tray, xcb_window_t icon) const;

  /// Has the display tell of trays that start; `isStart` knows the message.
  void listen() const;
  bool isStart(const xcb_client_message_event_t& message) const;

 private:
  EmbeddingTray(xcb_connection_t* connection, const xcb_screen_t* screen, int number);

  xcb_connection_t* connection_;
  const xcb_screen_t* screen_;
  xcb_atom_t selection_;
  xcb_atom_t opcode_;
  xcb_atom_t visual_;
  xcb_atom_t manager_;
};

}  // namespace ostrel
