#pragma once

#include <xcb/xcb.h>

#include <QImage>
#include <QPoint>
#include <string>

namespace ostrel {

/// A tray that embeds windows, on a connection of its own to the display. Ends when it is destroyed.
class EmbeddingTrayPeer {
 public:
  static constexpr QRgb background = qRgb(0x33, 0x66, 0x99);
  static constexpr QRgb lightBackground = qRgb(0xCC, 0xDD, 0xCC);

  /// Where windows of other pixels are asked for, `hasAlpha`.
  explicit EmbeddingTrayPeer(bool hasAlpha = false);
  EmbeddingTrayPeer(const EmbeddingTrayPeer&) = delete;
  EmbeddingTrayPeer& operator=(const EmbeddingTrayPeer&) = delete;
  ~EmbeddingTrayPeer() { xcb_disconnect(connection_); }

  /// Embeds the icon that has asked for it, if one has, at that size; `icon` is then the latest.
  bool hasEmbedded(int width, int height);
  xcb_window_t icon() const { return icon_; }

  /// Its windows stay on the screen when the tray ends.
  void saveIcon();

  void resizeIcon(int width, int height);

  void setBackground(QRgb color);

  /// The icon's pixels as the screen has them; no image when the window cannot be seen.
  QImage picture(int width, int height) const;

  /// A button let go over the icon, at a place of the icon and of the screen.
  void release(xcb_button_t button, QPoint place, QPoint placeOnScreen);

 private:
  xcb_connection_t* connection_ = xcb_connect(nullptr, nullptr);
  const xcb_screen_t& screen_ = *xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
  xcb_window_t window_ = xcb_generate_id(connection_);
  xcb_window_t icon_ = XCB_NONE;
};

/// The display as any other program sees it.
class DisplayPeer {
 public:
  DisplayPeer() = default;
  DisplayPeer(const DisplayPeer&) = delete;
  DisplayPeer& operator=(const DisplayPeer&) = delete;
  ~DisplayPeer() { xcb_disconnect(connection_); }

  bool hasWindow(xcb_window_t window) const;
  int depthOf(xcb_window_t window) const;

  /// The window's pixels as the screen has them; no image when it cannot be seen.
  QImage picture(xcb_window_t window) const;
  std::string property(xcb_window_t window, const std::string& name) const;

  /// Whether a window of that class can be seen, beside those in trays.
  bool showsWindowOf(const std::string& windowClass) const;

 private:
  xcb_connection_t* connection_ = xcb_connect(nullptr, nullptr);
};

}  // namespace ostrel
