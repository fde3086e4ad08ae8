#include "Platform/Desktop/Shell/DesktopStatusItem.hpp"

#include <QtEndian>
#include <array>
#include <utility>

#include "Platform/Desktop/Shell/IconImage.hpp"

namespace ostrel {

namespace {

constexpr std::array scales = {1, 2, 3};  // for 18, 36 and 54 pixels

DBusPixmap pixmapOf(const QImage& image) {
  const auto argb = image.convertToFormat(QImage::Format_ARGB32);
  DBusPixmap pixmap{argb.width(), argb.height(), {}};
  pixmap.bytes.resize(argb.sizeInBytes());
  qToBigEndian<quint32>(argb.constBits(), argb.sizeInBytes() / 4, pixmap.bytes.data());
  return pixmap;
}

QList<DBusPixmap> pixmapsOf(const std::string& resources, const MenuBarPicture& picture) {
  QList<DBusPixmap> pixmaps;
  const auto* glyph = std::get_if<menubarpicture::Glyph>(&picture);
  if (glyph == nullptr) return pixmaps;
  for (const int scale : scales) {
    const auto image = loadGlyph(resources, glyph->palette.glyphName(), scale);
    if (image) pixmaps.append(pixmapOf(iconImage(*image, glyph->badge, glyph->palette)));
  }
  return pixmaps;
}

}  // namespace

DesktopStatusItem::DesktopStatusItem(QDBusConnection connection, std::string resources,
                                     const LookWatcher& looks, Log& log, std::function<void(QPoint)> clicked)
    : resources_(std::move(resources)),
      looks_(looks),
      menu_(connection,
            [this](const PanelButton& button) {
              if (events_.menuPressed) events_.menuPressed(button);
            }),
      item_(connection, QLatin1String(StatusItemMenu::path), log, std::move(clicked)) {}

bool DesktopStatusItem::hasImage(std::string_view name) const { return hasGlyph(resources_, name); }

void DesktopStatusItem::show(const MenuBarIcon& icon) {
  const auto text = QString::fromStdString(icon.text);
  const auto* title = std::get_if<menubarpicture::Title>(&icon.picture);
  item_.setPixmaps(pixmapsOf(resources_, icon.picture));
  item_.setTitle(title == nullptr
                     ? text
                     : QString::fromUtf8(title->emoji.data(), static_cast<qsizetype>(title->emoji.size())));
  item_.setToolTip(text);
  item_.show();
}

}  // namespace ostrel
