#include "Shells/Desktop/Shell/EmbeddingTray.hpp"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <string>

namespace ostrel {

namespace {

constexpr std::uint32_t dockOpcode = 0;

const xcb_screen_t* screenOf(const xcb_setup_t* setup, int number) {
  auto each = xcb_setup_roots_iterator(setup);
  while (each.rem > 0 && number-- > 0) xcb_screen_next(&each);
  return each.rem > 0 ? each.data : nullptr;
}

/// Whether pictures of that depth are rows of 32-bit words in this machine's order.
bool hasWordPixels(const xcb_setup_t* setup, std::uint8_t depth) {
  const auto order =
      std::endian::native == std::endian::little ? XCB_IMAGE_ORDER_LSB_FIRST : XCB_IMAGE_ORDER_MSB_FIRST;
  const auto* formats = xcb_setup_pixmap_formats(setup);
  return setup->image_byte_order == order &&
         std::any_of(formats, formats + xcb_setup_pixmap_formats_length(setup), [depth](const auto& format) {
           return format.depth == depth && format.bits_per_pixel == 32;
         });
}

bool hasVisual(const xcb_screen_t& screen, const WindowVisual& visual) {
  for (auto depth = xcb_screen_allowed_depths_iterator(&screen); depth.rem > 0; xcb_depth_next(&depth)) {
    const auto* visuals = xcb_depth_visuals(depth.data);
    const bool isThere = std::any_of(visuals, visuals + xcb_depth_visuals_length(depth.data),
                                     [&](const auto& each) { return each.visual_id == visual.id; });
    if (depth.data->depth == visual.depth && isThere) return true;
  }
  return false;
}

}  // namespace

std::optional<EmbeddingTray> EmbeddingTray::of(xcb_connection_t* connection) {
  const auto* setup = xcb_get_setup(connection);
  const int number = screenNumber();
  const auto* screen = screenOf(setup, number);
  const bool isOfUse = screen != nullptr && screen->root_depth == 24 && hasWordPixels(setup, 24);
  if (!isOfUse) return std::nullopt;
  return EmbeddingTray(connection, screen, number);
}

EmbeddingTray::EmbeddingTray(xcb_connection_t* connection, const xcb_screen_t* screen, int number)
    : connection_(connection),
      screen_(screen),
      selection_(atom("_NET_SYSTEM_TRAY_S" + std::to_string(number))),
      opcode_(atom("_NET_SYSTEM_TRAY_OPCODE")),
      visual_(atom("_NET_SYSTEM_TRAY_VISUAL")),
      manager_(atom("MANAGER")) {}

xcb_window_t EmbeddingTray::window() const {
  const auto cookie = xcb_get_selection_owner(connection_, selection_);
  const auto reply = owned(xcb_get_selection_owner_reply(connection_, cookie, nullptr));
  const xcb_window_t tray = reply ? reply->owner : xcb_window_t{XCB_NONE};
  if (tray == XCB_NONE) return tray;
  const std::uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
  const auto fault = owned(xcb_request_check(
      connection_, xcb_change_window_attributes_checked(connection_, tray, XCB_CW_EVENT_MASK, &mask)));
  return fault ? xcb_window_t{XCB_NONE} : tray;
}

WindowVisual EmbeddingTray::visualFor(xcb_window_t tray) const {
  const WindowVisual usual{screen_->root_depth, screen_->root_visual};
  const auto cookie = xcb_get_property(connection_, 0, tray, visual_, XCB_ATOM_VISUALID, 0, 1);
  const auto reply = owned(xcb_get_property_reply(connection_, cookie, nullptr));
  if (!reply || reply->format != 32 || reply->value_len != 1) return usual;
  const WindowVisual asked{32, *static_cast<const xcb_visualid_t*>(xcb_get_property_value(reply.get()))};
  const bool isOfUse = hasVisual(*screen_, asked) && hasWordPixels(xcb_get_setup(connection_), asked.depth);
  return isOfUse ? asked : usual;
}

void EmbeddingTray::requestDock(xcb_window_t tray, xcb_window_t icon) const {
  xcb_client_message_event_t request{};
  request.response_type = XCB_CLIENT_MESSAGE;
  request.format = 32;
  request.window = tray;
  request.type = opcode_;
  request.data.data32[0] = XCB_CURRENT_TIME;
  request.data.data32[1] = dockOpcode;
  request.data.data32[2] = icon;
  const auto cookie = xcb_send_event_checked(connection_, 0, tray, XCB_EVENT_MASK_NO_EVENT,
                                             reinterpret_cast<const char*>(&request));
  // A tray that has just gone is of no interest.
  xcb_discard_reply(connection_, cookie.sequence);
}

void EmbeddingTray::listen() const {
  const auto cookie = xcb_get_window_attributes(connection_, screen_->root);
  const auto reply = owned(xcb_get_window_attributes_reply(connection_, cookie, nullptr));
  if (!reply) return;
  // The toolkit listens there, too, on the same connection.
  const std::uint32_t mask = reply->your_event_mask | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
  xcb_change_window_attributes(connection_, screen_->root, XCB_CW_EVENT_MASK, &mask);
}

bool EmbeddingTray::isStart(const xcb_client_message_event_t& message) const {
  return message.type == manager_ && message.window == screen_->root && message.format == 32 &&
         message.data.data32[1] == selection_;
}

}  // namespace ostrel
