#include "Platform/Desktop/Views/PanelPicture.hpp"

#include <QBuffer>
#include <QGuiApplication>
#include <QImage>
#include <QQuickRenderControl>
#include <QQuickRenderTarget>
#include <QScreen>

#include "Platform/Desktop/Views/PanelScene.hpp"

namespace ostrel {

namespace {

QImage rendered(QQuickRenderControl& control, QQuickWindow& window, QSize size, double pixelsPerPoint) {
  QImage image(size * pixelsPerPoint, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  image.setDevicePixelRatio(pixelsPerPoint);
  window.setGeometry(QRect(QPoint(), size));
  auto target = QQuickRenderTarget::fromPaintDevice(&image);
  target.setDevicePixelRatio(pixelsPerPoint);
  window.setRenderTarget(target);
  control.polishItems();
  control.sync();
  control.render();
  return image;
}

}  // namespace

std::expected<std::string, std::string> panelPicture(const PanelContent& content, const DesktopLook& look,
                                                     Log& log) {
  PanelScene::chooseRenderer();
  QQuickRenderControl control;
  QQuickWindow window(&control);
  window.setColor(Qt::transparent);
  const double pixelsPerPoint = QGuiApplication::primaryScreen()->devicePixelRatio();
  PanelScene scene(log);
  scene.state().show(content);
  if (auto filled = scene.fill(window); !filled) return std::unexpected(filled.error());
  scene.setLook(look);
  scene.layOut();
  QByteArray file;
  QBuffer buffer(&file);
  if (!rendered(control, window, scene.size(), pixelsPerPoint).save(&buffer, "PNG")) {
    return std::unexpected("The picture cannot be written.");
  }
  return file.toStdString();
}

}  // namespace ostrel
