#include "Shells/Desktop/Views/Common/Picture.hpp"

#include <QBuffer>
#include <QGuiApplication>
#include <QImage>
#include <QQuickRenderControl>
#include <QQuickRenderTarget>
#include <QScreen>

#include "Shells/Desktop/Views/Alert/AlertState.hpp"
#include "Shells/Desktop/Views/Common/Scene.hpp"
#include "Shells/Desktop/Views/Onboarding/OnboardingState.hpp"
#include "Shells/Desktop/Views/Panel/PanelState.hpp"
#include "Shells/Desktop/Views/Window/AgentWindowState.hpp"

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

/// The QML file, which shows the state, as a PNG file. Pixels that no item covers are transparent.
[[nodiscard]] std::expected<std::string, std::string> picture(const char* file, const char* property,
                                                              QObject& state, const DesktopTheme& theme,
                                                              Log& log) {
  Scene::chooseRenderer();
  QQuickRenderControl control;
  QQuickWindow window(&control);
  window.setColor(Qt::transparent);
  const double pixelsPerPoint = QGuiApplication::primaryScreen()->devicePixelRatio();
  Scene scene(log);
  if (auto filled = scene.fill(window, file, property, state); !filled) {
    return std::unexpected(filled.error());
  }
  scene.setTheme(theme);
  scene.layOut();
  QByteArray bytes;
  QBuffer buffer(&bytes);
  if (!rendered(control, window, scene.size(), pixelsPerPoint).save(&buffer, "PNG")) {
    return std::unexpected("The picture cannot be written.");
  }
  return bytes.toStdString();
}

}  // namespace

std::expected<std::string, std::string> panelPicture(const PanelContent& content, const DesktopTheme& theme,
                                                     Log& log) {
  PanelState state;
  state.show(content);
  return picture(PanelState::screen, PanelState::property, state, theme, log);
}

std::expected<std::string, std::string> onboardingPicture(const OnboardingContent& content,
                                                          const DesktopTheme& theme, Log& log) {
  OnboardingState state;
  state.show(content);
  return picture(OnboardingState::screen, OnboardingState::property, state, theme, log);
}

std::expected<std::string, std::string> alertPicture(const Alert& alert, const DesktopTheme& theme,
                                                     Log& log) {
  AlertState state;
  state.show(alert);
  return picture(AlertState::screen, AlertState::property, state, theme, log);
}

std::expected<std::string, std::string> agentWindowPicture(const AgentWindowContent& content,
                                                           const WindowSize& size, const DesktopTheme& theme,
                                                           Log& log) {
  AgentWindowState state;
  state.setSize({size.width, size.height});
  state.show(content);
  return picture(AgentWindowState::screen, AgentWindowState::property, state, theme, log);
}

}  // namespace ostrel
