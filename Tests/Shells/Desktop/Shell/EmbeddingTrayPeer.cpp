#include "Tests/Shells/Desktop/Shell/EmbeddingTrayPeer.hpp"

#include <algorithm>
#include <array>
#include <cstring>

#include "Shells/Desktop/Xcb/XcbReply.hpp"

namespace ostrel {

namespace {

xcb_visualid_t visualOfDepth(const xcb_screen_t& screen, int wanted) {
  for (auto depth = xcb_screen_allowed_depths_iterator(&screen); depth.rem > 0; xcb_depth_next(&depth)) {
    if (depth.data->depth == wanted && depth.data->visuals_len > 0) {
      return xcb_depth_visuals(depth.data)->visual_id;
    }
  }
  return XCB_NONE;
}

/// The window's pixels as the screen has them; no image when it cannot be seen.
QImage pictureOf(xcb_connection_t* connection, xcb_window_t window, int width, int height) {
  const auto cookie =
      xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, window, 0, 0, static_cast<std::uint16_t>(width),
                    static_cast<std::uint16_t>(height), ~0U);
  const auto shown = owned(xcb_get_image_reply(connection, cookie, nullptr));
  if (!shown) return {};
  QImage image(width, height,
               shown->depth == 32 ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
  if (xcb_get_image_data_length(shown.get()) != image.sizeInBytes()) return {};
  std::memcpy(image.bits(), xcb_get_image_data(shown.get()), static_cast<std::size_t>(image.sizeInBytes()));
  return image;
}

}  // namespace

EmbeddingTrayPeer::EmbeddingTrayPeer(bool hasAlpha) {
  const std::array<std::uint32_t, 2> values = {background & 0xFFFFFF, 1};
  xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window_, screen_.root, 100, 50, 600, 400, 0,
                    XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                    XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values.data());
  xcb_map_window(connection_, window_);
  if (hasAlpha) {
    const auto visual = visualOfDepth(screen_, 32);
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window_,
                        atomOf(connection_, "_NET_SYSTEM_TRAY_VISUAL"), XCB_ATOM_VISUALID, 32, 1, &visual);
  }
  const auto selection = atomOf(connection_, "_NET_SYSTEM_TRAY_S0");
  xcb_set_selection_owner(connection_, window_, selection, XCB_CURRENT_TIME);
  xcb_client_message_event_t start{};
  start.response_type = XCB_CLIENT_MESSAGE;
  start.format = 32;
  start.window = screen_.root;
  start.type = atomOf(connection_, "MANAGER");
  start.data.data32[1] = selection;
  start.data.data32[2] = window_;
  xcb_send_event(connection_, 0, screen_.root, XCB_EVENT_MASK_STRUCTURE_NOTIFY,
                 reinterpret_cast<const char*>(&start));
  xcb_flush(connection_);
}

bool EmbeddingTrayPeer::hasEmbedded(int width, int height) {
  const auto event = owned(xcb_poll_for_event(connection_));
  if (!event || (event->response_type & 0x7F) != XCB_CLIENT_MESSAGE) return false;
  const auto& request = reinterpret_cast<const xcb_client_message_event_t&>(*event);
  if (request.type != atomOf(connection_, "_NET_SYSTEM_TRAY_OPCODE") || request.data.data32[1] != 0) {
    return false;
  }
  icon_ = request.data.data32[2];
  xcb_reparent_window(connection_, icon_, window_, 10, 5);
  resizeIcon(width, height);
  xcb_map_window(connection_, icon_);
  xcb_flush(connection_);
  return true;
}

void EmbeddingTrayPeer::saveIcon() {
  xcb_change_save_set(connection_, XCB_SET_MODE_INSERT, icon_);
  xcb_flush(connection_);
}

void EmbeddingTrayPeer::resizeIcon(int width, int height) {
  const std::array<int, 2> size = {width, height};
  xcb_configure_window(connection_, icon_, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, size.data());
  xcb_flush(connection_);
}

void EmbeddingTrayPeer::setBackground(QRgb color) {
  const std::uint32_t value = color & 0xFFFFFF;
  xcb_change_window_attributes(connection_, window_, XCB_CW_BACK_PIXEL, &value);
  xcb_clear_area(connection_, 1, icon_, 0, 0, 0, 0);
  xcb_flush(connection_);
}

QImage EmbeddingTrayPeer::picture(int width, int height) const {
  return pictureOf(connection_, icon_, width, height);
}

void EmbeddingTrayPeer::release(xcb_button_t button, QPoint place, QPoint placeOnScreen) {
  xcb_button_release_event_t event{};
  event.response_type = XCB_BUTTON_RELEASE;
  event.detail = button;
  event.root = screen_.root;
  event.event = icon_;
  event.event_x = static_cast<std::int16_t>(place.x());
  event.event_y = static_cast<std::int16_t>(place.y());
  event.root_x = static_cast<std::int16_t>(placeOnScreen.x());
  event.root_y = static_cast<std::int16_t>(placeOnScreen.y());
  xcb_send_event(connection_, 0, icon_, XCB_EVENT_MASK_BUTTON_RELEASE, reinterpret_cast<const char*>(&event));
  xcb_flush(connection_);
}

bool DisplayPeer::hasWindow(xcb_window_t window) const { return depthOf(window) != 0; }

int DisplayPeer::depthOf(xcb_window_t window) const {
  const auto reply =
      owned(xcb_get_geometry_reply(connection_, xcb_get_geometry(connection_, window), nullptr));
  return reply ? reply->depth : 0;
}

QImage DisplayPeer::picture(xcb_window_t window) const {
  const auto reply =
      owned(xcb_get_geometry_reply(connection_, xcb_get_geometry(connection_, window), nullptr));
  return reply ? pictureOf(connection_, window, reply->width, reply->height) : QImage();
}

bool DisplayPeer::showsWindowOf(const std::string& windowClass) const {
  const auto root = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
  const auto tree = owned(xcb_query_tree_reply(connection_, xcb_query_tree(connection_, root), nullptr));
  if (!tree) return false;
  const auto* windows = xcb_query_tree_children(tree.get());
  return std::any_of(windows, windows + xcb_query_tree_children_length(tree.get()), [&](xcb_window_t window) {
    const auto cookie = xcb_get_window_attributes(connection_, window);
    const auto attributes = owned(xcb_get_window_attributes_reply(connection_, cookie, nullptr));
    return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE &&
           property(window, "WM_CLASS").ends_with(windowClass + '\0');
  });
}

std::string DisplayPeer::property(xcb_window_t window, const std::string& name) const {
  const auto cookie =
      xcb_get_property(connection_, 0, window, atomOf(connection_, name), XCB_GET_PROPERTY_TYPE_ANY, 0, 1000);
  const auto reply = owned(xcb_get_property_reply(connection_, cookie, nullptr));
  if (!reply) return {};
  return {static_cast<const char*>(xcb_get_property_value(reply.get())),
          static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
}

}  // namespace ostrel
