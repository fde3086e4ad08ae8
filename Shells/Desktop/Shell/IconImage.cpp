#include "Shells/Desktop/Shell/IconImage.hpp"

#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QSize>
#include <QString>
#include <algorithm>

#include "Shells/Desktop/Shell/PainterCanvas.hpp"

namespace ostrel {

namespace {

constexpr int largestScale = 3;
constexpr int largestSide = 512;

bool isOfUse(const QSize& size) {
  return !size.isEmpty() && size.width() <= largestSide && size.height() <= largestSide;
}

/// Asks for the size before any pixel is read.
std::optional<QImage> readPicture(const QString& path) {
  if (!QFileInfo(path).isFile()) return std::nullopt;
  QImageReader reader(path, "png");
  reader.setAutoDetectImageFormat(false);
  if (!isOfUse(reader.size())) return std::nullopt;
  const QImage picture = reader.read();
  if (picture.isNull()) return std::nullopt;
  return picture.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

QImage transparentImage(QSize size) {
  QImage image(size, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  return image;
}

}  // namespace

std::optional<QImage> loadGlyph(const std::string& resources, std::string_view name, int scale) {
  const auto stem = QFile::decodeName(resources.c_str()) + '/' +
                    QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()));
  for (int next = std::min(scale, largestScale); next > 1; --next) {
    if (auto picture = readPicture(stem + QStringLiteral("@%1x.png").arg(next))) return picture;
  }
  return readPicture(stem + QStringLiteral(".png"));
}

bool hasGlyph(const std::string& resources, std::string_view name) {
  return loadGlyph(resources, name, 1).has_value();
}

QImage iconImage(const QImage& glyph, MenuBarBadge badge, MenuBarPalette palette) {
  auto image = transparentImage(glyph.size());
  {
    PainterCanvas canvas(image, glyph);
    drawMenuBarImage(canvas, image.width(), image.height(), badge, palette);
  }
  return image;
}

QImage titleImage(const menubarpicture::Title& title, int side) {
  auto image = transparentImage({side, side});
  {
    PainterCanvas canvas(image);
    drawMenuBarTitle(canvas, side, title);
  }
  return image;
}

}  // namespace ostrel
