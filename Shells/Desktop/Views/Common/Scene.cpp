#include "Shells/Desktop/Views/Common/Scene.hpp"

#include <QtQml/qqml.h>
#include <QFontInfo>
#include <QGuiApplication>
#include <QLibraryInfo>
#include <QQmlComponent>

#include <cmath>
#include <mutex>

#include "Shells/Desktop/Views/Common/Look.hpp"

// Written by the build from the types of this folder.
void qml_register_types_Ostrel_Views();

// Calls from outside a namespace are what the build's macros want.
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

void tellWithoutFont(Log& log) {
  static bool isTold = false;
  if (isTold || !QFontInfo(QGuiApplication::font()).family().isEmpty()) return;
  isTold = true;
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
  // Nothing is looked for beside the program or where the environment says.
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
  tellWithoutFont(log_);
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

void Scene::setLook(const DesktopLook& look) {
  engine_.singletonInstance<Look*>(qmlTypeId("Ostrel.Views", 1, 0, "Look"))->set(look);
}

void Scene::layOut() {
  // One part can change the room of another that is done already.
  for (int pass = 0; pass < 3; ++pass) polish(*root_);
}

QSize Scene::size() const {
  return {static_cast<int>(std::ceil(root_->width())), static_cast<int>(std::ceil(root_->height()))};
}

}  // namespace ostrel
