#include "Shells/Desktop/Views/Common/Scene.hpp"

#include <QtQml/qqml.h>
#include <QFontInfo>
#include <QGuiApplication>
#include <QLibraryInfo>
#include <QQmlComponent>

#include <cmath>
#include <mutex>

#include "Shells/Desktop/Views/Common/Theme.hpp"

// Written by the build from the types of this folder.
void qml_register_types_Ostrel_Views();

// Q_INIT_RESOURCE must be used outside of a namespace.
static void initResources() { Q_INIT_RESOURCE(qmake_Ostrel_Views); }

namespace ostrel {

namespace {

constexpr auto importPath = "qrc:/views";
constexpr auto screensPath = "qrc:/views/Ostrel/Views/";

void registerTypes() {
  static const bool isDone = [] {
    initResources();
    qml_register_types_Ostrel_Views();
    return true;
  }();
  Q_UNUSED(isDone);
}

void logMissingFont(Log& log) {
  static bool isLogged = false;
  if (isLogged || !QFontInfo(QGuiApplication::font()).family().isEmpty()) return;
  isLogged = true;
  log.line("ostrel: No font is installed; texts cannot be drawn.");
}

void polish(QQuickItem& item) {
  const auto children = item.childItems();
  for (auto* child : children) polish(*child);
  item.ensurePolished();
}

}  // namespace

Scene::Scene(Log& log) : log_(log) {
  registerTypes();
  engine_.setOutputWarningsToStandardError(false);
  // Neither the program's folder nor the environment adds folders of QML modules.
  engine_.setImportPathList({importPath, QLibraryInfo::path(QLibraryInfo::QmlImportsPath)});
  QObject::connect(&engine_, &QQmlEngine::warnings, &engine_, [this](const QList<QQmlError>& warnings) {
    for (const auto& warning : warnings) log_.line("ostrel: " + warning.toString().toStdString());
  });
}

void Scene::chooseRenderer() {
  static std::once_flag isChosen;
  std::call_once(isChosen, [] { QQuickWindow::setGraphicsApi(QSGRendererInterface::Software); });
}

std::expected<void, std::string> Scene::fill(QQuickWindow& window, const char* file, const char* property,
                                             QObject& state) {
  const QUrl screen(QLatin1String(screensPath) + QLatin1String(file));
  // The engine's thread reads the views while this one reads the fonts, which takes as long.
  const QQmlComponent ahead(&engine_, screen, QQmlComponent::Asynchronous);
  logMissingFont(log_);
  QQmlComponent component(&engine_, screen);
  if (!component.isReady()) return std::unexpected(component.errorString().trimmed().toStdString());
  std::unique_ptr<QObject> object(component.createWithInitialProperties(
      {{QLatin1String(property), QVariant::fromValue(&state)},
       {QStringLiteral("parent"), QVariant::fromValue(window.contentItem())}}));
  if (!qobject_cast<QQuickItem*>(object.get())) {
    return std::unexpected(component.errorString().trimmed().toStdString());
  }
  root_.reset(static_cast<QQuickItem*>(object.release()));
  return {};
}

void Scene::setTheme(const DesktopTheme& theme) {
  engine_.singletonInstance<Theme*>(qmlTypeId("Ostrel.Views", 1, 0, "Theme"))->set(theme);
}

void Scene::layOut() {
  // An item that is polished late can change the room of one that was polished before.
  for (int pass = 0; pass < 3; ++pass) polish(*root_);
}

QSize Scene::size() const {
  return {static_cast<int>(std::ceil(root_->width())), static_cast<int>(std::ceil(root_->height()))};
}

}  // namespace ostrel
