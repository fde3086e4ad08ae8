#include <QAbstractNativeEventFilter>
#include <QGuiApplication>
#include <QPainter>
#include <QPalette>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <optional>
#include <utility>

#include "Shells/Desktop/Shell/EmbeddedIcon.hpp"
#include "Shells/Desktop/Shell/EmbeddingTray.hpp"

namespace ostrel {

namespace {

constexpr double usualSide = 22;        // points
constexpr int largestSide = 128;        // pixels; a picture of that size fits into every request
constexpr xcb_button_t lastButton = 3;  // further ones are the wheel's
constexpr std::uint8_t sentFlag = 0x80;
constexpr std::uint32_t hasLeastSize = 1U << 4;

/// The smallest image that need not be enlarged, at that side in pixels.
QImage scaledTo(int side, const std::vector<QImage>& images) {
  if (images.empty()) return {};
  const auto fits = [side](const QImage& image) { return std::max(image.width(), image.height()) >= side; };
  const auto found = std::ranges::find_if(images, fits);
  const QImage& image = found == images.end() ? images.back() : *found;
  return image.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

Appearance appearanceOf(const QImage& background) {
  const auto mean = background.scaled(1, 1, Qt::IgnoreAspectRatio, Qt::SmoothTransformation).pixel(0, 0);
  return qGray(mean) < 128 ? Appearance::dark : Appearance::light;
}

QRgb usualBackground() { return QGuiApplication::palette().color(QPalette::Window).rgb(); }

/// A window of the display's own kind: the toolkit's windows bring a window manager's business with them.
class XEmbedIcon final : public EmbeddedIcon, public QAbstractNativeEventFilter {
 public:
  XEmbedIcon(xcb_connection_t* connection, const EmbeddingTray& tray, Events events)
      : connection_(connection), tray_(tray), events_(std::move(events)) {
    tray_.listen();
    QCoreApplication::instance()->installNativeEventFilter(this);
  }
  ~XEmbedIcon() override { undock(); }

  void show(Images images, const QString& title) override {
    images_ = std::move(images);
    title_ = title.toUtf8();
    if (window_ == XCB_NONE) return;
    writeTitle();
    draw();
  }

  void setWanted(bool isWanted) override {
    if (std::exchange(isWanted_, isWanted) != isWanted) dock();
  }

  std::optional<Appearance> appearance() const override { return appearance_; }

  bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

 private:
  void dock();
  void undock();
  void createWindow();
  void writeTitle();
  void draw();
  QImage background(int x, int y, int side);
  void setAppearance(std::optional<Appearance> appearance);
  void takeParent(xcb_window_t parent);
  void takeClick(const xcb_button_release_event_t& click);

  /// The tray may take the window down at any time, so that a request fails is of no interest.
  void send(xcb_void_cookie_t checked) const { xcb_discard_reply(connection_, checked.sequence); }
  void setProperty(xcb_atom_t property, xcb_atom_t type, std::uint8_t bits, std::size_t count,
                   const void* data) const {
    send(xcb_change_property_checked(connection_, XCB_PROP_MODE_REPLACE, window_, property, type, bits,
                                     static_cast<std::uint32_t>(count), data));
  }

  xcb_connection_t* connection_;
  EmbeddingTray tray_;
  xcb_atom_t info_ = tray_.atom("_XEMBED_INFO");
  xcb_atom_t name_ = tray_.atom("_NET_WM_NAME");
  xcb_atom_t utf8_ = tray_.atom("UTF8_STRING");
  Events events_;
  QObject later_;
  Images images_;
  QByteArray title_;
  bool isWanted_ = false;
  std::optional<Appearance> appearance_;
  xcb_window_t window_ = XCB_NONE;
  xcb_window_t trayWindow_ = XCB_NONE;  ///< of use while there is a window of its own
  WindowVisual visual_;
  int width_ = 0;
  int height_ = 0;
};

void XEmbedIcon::dock() {
  const xcb_window_t tray = isWanted_ ? tray_.window() : xcb_window_t{XCB_NONE};
  // A tray may tell of its start after it was found.
  if (window_ != XCB_NONE && tray == trayWindow_) return;
  undock();
  if (tray == XCB_NONE) return;
  trayWindow_ = tray;
  visual_ = tray_.visualFor(tray);
  createWindow();
  tray_.requestDock(tray, window_);
  xcb_flush(connection_);
}

void XEmbedIcon::undock() {
  if (window_ == XCB_NONE) return;
  send(xcb_destroy_window_checked(connection_, std::exchange(window_, XCB_NONE)));
  xcb_flush(connection_);
  setAppearance(std::nullopt);
}

void XEmbedIcon::createWindow() {
  const auto& screen = tray_.screen();
  const auto side = static_cast<std::uint16_t>(std::lround(usualSide * qGuiApp->devicePixelRatio()));
  width_ = height_ = side;
  window_ = xcb_generate_id(connection_);
  const auto colors = xcb_generate_id(connection_);
  send(xcb_create_colormap_checked(connection_, XCB_COLORMAP_ALLOC_NONE, colors, screen.root, visual_.id));
  const std::array<std::uint32_t, 4> values = {visual_.hasAlpha() ? 0 : usualBackground() & RGB_MASK, 0,
                                               XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_EXPOSURE |
                                                   XCB_EVENT_MASK_BUTTON_PRESS |
                                                   XCB_EVENT_MASK_BUTTON_RELEASE,
                                               colors};
  send(xcb_create_window_checked(
      connection_, visual_.depth, window_, screen.root, 0, 0, side, side, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
      visual_.id, XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_EVENT_MASK | XCB_CW_COLORMAP,
      values.data()));
  // Of use at the window's making only: nothing is drawn by numbers of colours.
  send(xcb_free_colormap_checked(connection_, colors));
  constexpr std::array<std::uint32_t, 2> versionAndMapped = {0, 1};
  setProperty(info_, info_, 32, versionAndMapped.size(), versionAndMapped.data());
  // Some trays give an icon no more than the least that it says it needs.
  std::array<std::uint32_t, 18> sizes{};
  sizes[0] = hasLeastSize;
  sizes[5] = sizes[6] = side;
  setProperty(XCB_ATOM_WM_NORMAL_HINTS, XCB_ATOM_WM_SIZE_HINTS, 32, sizes.size(), sizes.data());
  constexpr char nameAndClass[] = "ostrel-agent\0OstrelAgent";
  setProperty(XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8, sizeof(nameAndClass), nameAndClass);
  writeTitle();
}

/// For whoever tells icons apart by their names; trays that embed windows take no tooltips.
void XEmbedIcon::writeTitle() {
  for (const xcb_atom_t name : {name_, xcb_atom_t{XCB_ATOM_WM_NAME}}) {
    setProperty(name, utf8_, 8, static_cast<std::size_t>(title_.size()), title_.constData());
  }
}

void XEmbedIcon::draw() {
  const int side = std::min({width_, height_, largestSide});
  const int x = (width_ - side) / 2;
  const int y = (height_ - side) / 2;
  send(xcb_clear_area_checked(connection_, 0, window_, 0, 0, 0, 0));
  QImage picture = background(x, y, side);
  const QImage icon = scaledTo(side, images_ ? images_() : std::vector<QImage>());
  QPainter(&picture).drawImage((side - icon.width()) / 2, (side - icon.height()) / 2, icon);
  const auto context = xcb_generate_id(connection_);
  send(xcb_create_gc_checked(connection_, context, window_, 0, nullptr));
  send(xcb_put_image_checked(connection_, XCB_IMAGE_FORMAT_Z_PIXMAP, window_, context,
                             static_cast<std::uint16_t>(side), static_cast<std::uint16_t>(side),
                             static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), 0, visual_.depth,
                             static_cast<std::uint32_t>(picture.sizeInBytes()), picture.constBits()));
  send(xcb_free_gc_checked(connection_, context));
  xcb_flush(connection_);
}

/// What the tray shows through the cleared window.
QImage XEmbedIcon::background(int x, int y, int side) {
  QImage image(side, side, visual_.hasAlpha() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
  image.fill(visual_.hasAlpha() ? 0 : usualBackground());
  if (visual_.hasAlpha()) return image;
  const auto cookie = xcb_get_image(connection_, XCB_IMAGE_FORMAT_Z_PIXMAP, window_,
                                    static_cast<std::int16_t>(x), static_cast<std::int16_t>(y),
                                    static_cast<std::uint16_t>(side), static_cast<std::uint16_t>(side), ~0U);
  const auto shown = owned(xcb_get_image_reply(connection_, cookie, nullptr));
  if (shown && xcb_get_image_data_length(shown.get()) == image.sizeInBytes()) {
    std::memcpy(image.bits(), xcb_get_image_data(shown.get()), static_cast<std::size_t>(image.sizeInBytes()));
    setAppearance(appearanceOf(image));
  }
  return image;
}

void XEmbedIcon::setAppearance(std::optional<Appearance> appearance) {
  if (std::exchange(appearance_, appearance) == appearance) return;
  QMetaObject::invokeMethod(
      &later_, [this] { events_.appearanceChanged(); }, Qt::QueuedConnection);
}

bool XEmbedIcon::nativeEventFilter(const QByteArray& type, void* message, qintptr* /*result*/) {
  if (type != "xcb_generic_event_t") return false;
  const auto with = [this, message]<typename Event>(xcb_window_t Event::*window, auto take) {
    const auto& event = *static_cast<const Event*>(message);
    if (window_ == XCB_NONE || event.*window != window_) return false;
    take(event);
    return true;
  };
  switch (static_cast<const xcb_generic_event_t*>(message)->response_type & ~sentFlag) {
    case XCB_CLIENT_MESSAGE:
      if (tray_.isStart(*static_cast<const xcb_client_message_event_t*>(message))) dock();
      return false;
    case XCB_REPARENT_NOTIFY:
      return with(&xcb_reparent_notify_event_t::window, [this](auto& event) { takeParent(event.parent); });
    case XCB_CONFIGURE_NOTIFY:
      return with(&xcb_configure_notify_event_t::window, [this](auto& event) {
        width_ = event.width;
        height_ = event.height;
      });
    case XCB_DESTROY_NOTIFY:
      if (static_cast<const xcb_destroy_notify_event_t*>(message)->window == trayWindow_) undock();
      return with(&xcb_destroy_notify_event_t::window, [this](auto&) {
        window_ = XCB_NONE;
        setAppearance(std::nullopt);
      });
    case XCB_EXPOSE:
      return with(&xcb_expose_event_t::window, [this](auto& event) {
        if (event.count == 0) draw();
      });
    case XCB_BUTTON_RELEASE:
      return with(&xcb_button_release_event_t::event, [this](auto& event) { takeClick(event); });
    default:
      return false;
  }
}

void XEmbedIcon::takeParent(xcb_window_t parent) {
  // A tray that ends may leave its windows on the screen.
  if (parent == tray_.screen().root) return undock();
  if (visual_.hasAlpha()) return;
  // Fails where the tray's window is of another depth; then the usual background stays.
  const std::uint32_t background = XCB_BACK_PIXMAP_PARENT_RELATIVE;
  send(xcb_change_window_attributes_checked(connection_, window_, XCB_CW_BACK_PIXMAP, &background));
  // Seen already, perhaps.
  draw();
}

void XEmbedIcon::takeClick(const xcb_button_release_event_t& click) {
  const bool isInside =
      click.event_x >= 0 && click.event_x < width_ && click.event_y >= 0 && click.event_y < height_;
  if (!isInside || click.detail > lastButton) return;
  // The middle of the edge towards the screen's middle, so that what opens there leaves the icon free.
  const int x = click.root_x - click.event_x + width_ / 2;
  const int top = click.root_y - click.event_y;
  const bool isInUpperHalf = top < tray_.screen().height_in_pixels / 2;
  const QPoint place(x, isInUpperHalf ? top + height_ - 1 : top);
  // What a click does opens and closes windows, which is not for the midst of an event.
  QMetaObject::invokeMethod(
      &later_, [this, place] { events_.clicked(place); }, Qt::QueuedConnection);
}

}  // namespace

std::unique_ptr<EmbeddedIcon> makeEmbeddedIcon(EmbeddedIcon::Events events) {
  const auto* display = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  if (display == nullptr || display->connection() == nullptr) return nullptr;
  const auto tray = EmbeddingTray::of(display->connection());
  if (!tray) return nullptr;
  return std::make_unique<XEmbedIcon>(display->connection(), *tray, std::move(events));
}

}  // namespace ostrel
