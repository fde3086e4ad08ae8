#include "Shells/Desktop/Shell/ThemeWatcher.hpp"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QEvent>
#include <QFont>
#include <QGuiApplication>
#include <QMap>
#include <QPalette>
#include <QVariantMap>
#include <utility>

#include "Shells/Desktop/Shell/DBusTypes.hpp"

namespace ostrel {

namespace {

const QString portal = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString settingsInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString appearanceGroup = QStringLiteral("org.freedesktop.appearance");
const QString interfaceGroup = QStringLiteral("org.gnome.desktop.interface");

/// Assigns the value if it is of the right type.
template <class Value>
void take(std::optional<Value>& setting, const QVariant& value) {
  if (value.metaType() == QMetaType::fromType<Value>()) setting = value.value<Value>();
}

}  // namespace

ThemeWatcher::ThemeWatcher(DesktopBus& bus, std::function<void()> changed)
    : bus_(bus), changed_(std::move(changed)) {
  takeToolkit();
  theme_ = desktopTheme(settings_);
  QCoreApplication::instance()->installEventFilter(this);
  registerDBusTypes();
  // From any sender: for a well-known name the toolkit would ask the bus for its owner and wait.
  bus_.connection().connect({}, portalPath, settingsInterface, QStringLiteral("SettingChanged"), this,
                            SLOT(settingChanged(QString, QString, QDBusVariant)));
  connect(&bus_, &DesktopBus::ownerChanged, this, [this](const QString& name, const QString& owner) {
    if (name == portal && !owner.isEmpty()) askPortal();
  });
  bus_.whenJoined(this, [this] {
    bus_.subscribe(QStringLiteral("type='signal',path='%1',interface='%2',member='SettingChanged'")
                       .arg(portalPath, settingsInterface));
    bus_.watchOwner(portal);
    askPortal();
  });
}

void ThemeWatcher::askPortal() {
  auto call =
      QDBusMessage::createMethodCall(portal, portalPath, settingsInterface, QStringLiteral("ReadAll"));
  call << QStringList{appearanceGroup, interfaceGroup};
  bus_.callAsync(this, call, [this](const QDBusMessage& answer) {
    if (answer.signature() != QLatin1String("a{sa{sv}}")) return;
    const auto groups = qdbus_cast<QMap<QString, QVariantMap>>(answer.arguments().at(0));
    for (auto group = groups.begin(); group != groups.end(); ++group) {
      for (auto setting = group->begin(); setting != group->end(); ++setting) {
        takeSetting(group.key(), setting.key(), setting.value());
      }
    }
    publish();
  });
}

void ThemeWatcher::settingChanged(const QString& group, const QString& key, const QDBusVariant& value) {
  takeSetting(group, key, value.variant());
  publish();
}

void ThemeWatcher::takeSetting(const QString& group, const QString& key, const QVariant& value) {
  if (group == appearanceGroup) {
    if (key == QLatin1String("color-scheme")) take(settings_.colorScheme, value);
    if (key == QLatin1String("reduced-motion")) take(settings_.reducedMotion, value);
  }
  if (group == interfaceGroup) {
    if (key == QLatin1String("enable-animations")) take(settings_.animations, value);
    if (key == QLatin1String("text-scaling-factor")) take(settings_.textScaling, value);
  }
}

bool ThemeWatcher::eventFilter(QObject* /*object*/, QEvent* event) {
  const bool isOfToolkit =
      event->type() == QEvent::ApplicationPaletteChange || event->type() == QEvent::ApplicationFontChange;
  if (isOfToolkit) {
    takeToolkit();
    publish();
  }
  return false;
}

void ThemeWatcher::takeToolkit() {
  settings_.paletteLightness = QGuiApplication::palette().color(QPalette::Window).lightness();
  settings_.fontPoints = QGuiApplication::font().pointSizeF();
}

void ThemeWatcher::publish() {
  const auto theme = desktopTheme(settings_);
  if (theme == theme_) return;
  theme_ = theme;
  changed_();
}

}  // namespace ostrel
