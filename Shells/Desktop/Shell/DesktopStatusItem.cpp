#include "Shells/Desktop/Shell/DesktopStatusItem.hpp"

#include <QtEndian>
#include <array>
#include <utility>

#include "Shells/Desktop/Shell/IconImage.hpp"

namespace ostrel {

namespace {

constexpr int points = 18;
constexpr std::array scales = {1, 2, 3};  // for 18, 36 and 54 pixels

DBusPixmap pixmapOf(const QImage& image) {
  const auto argb = image.convertToFormat(QImage::Format_ARGB32);
  DBusPixmap pixmap{argb.width(), argb.height(), {}};
  pixmap.bytes.resize(argb.sizeInBytes());
  qToBigEndian<quint32>(argb.constBits(), argb.sizeInBytes() / 4, pixmap.bytes.data());
  return pixmap;
}

std::optional<QImage> imageOf(const std::string& resources, const MenuBarPicture& picture, int scale) {
  // Trays show no titles.
  if (const auto* title = std::get_if<menubarpicture::Title>(&picture))
    return titleImage(*title, points * scale);
  const auto* glyph = std::get_if<menubarpicture::Glyph>(&picture);
  if (glyph == nullptr) return std::nullopt;
  const auto image = loadGlyph(resources, glyph->palette.glyphName(), scale);
  if (!image) return std::nullopt;
  return iconImage(*image, glyph->badge, glyph->palette);
}

std::vector<QImage> imagesOf(const std::string& resources, const MenuBarPicture& picture) {
  std::vector<QImage> images;
  for (const int scale : scales) {
    if (auto image = imageOf(resources, picture, scale)) images.push_back(std::move(*image));
  }
  return images;
}

QList<DBusPixmap> pixmapsOf(const std::vector<QImage>& images) {
  QList<DBusPixmap> pixmaps;
  for (const auto& image : images) pixmaps.append(pixmapOf(image));
  return pixmaps;
}

}  // namespace

DesktopStatusItem::DesktopStatusItem(DesktopBus& bus, std::string resources, const ThemeWatcher& themeWatcher,
                                     Log& log, std::function<void(QPoint)> clicked)
    : resources_(std::move(resources)),
      themeWatcher_(themeWatcher),
      menu_(bus,
            [this](const PanelButton& button) {
              if (events_.menuPressed) events_.menuPressed(button);
            }),
      item_(bus, QLatin1String(StatusItemMenu::path), log, std::move(clicked)) {}

std::optional<Appearance> DesktopStatusItem::appearance() const { return themeWatcher_.theme().appearance; }

bool DesktopStatusItem::hasImage(std::string_view name) const { return hasGlyph(resources_, name); }

void DesktopStatusItem::show(const MenuBarIcon& icon) {
  const auto text = QString::fromStdString(icon.text);
  const auto* title = std::get_if<menubarpicture::Title>(&icon.picture);
  if (icon.picture != picture_) {
    picture_ = icon.picture;
    images_.clear();
    item_.setPixmaps([this] { return pixmapsOf(images()); });
  }
  item_.setTitle(title == nullptr
                     ? text
                     : QString::fromUtf8(title->emoji.data(), static_cast<qsizetype>(title->emoji.size())));
  item_.setToolTip(text);
  item_.show();
}

/// Drawn when a tray first asks, so that drawing does not delay the registration.
const std::vector<QImage>& DesktopStatusItem::images() {
  if (images_.empty() && picture_) images_ = imagesOf(resources_, *picture_);
  return images_;
}

}  // namespace ostrel
