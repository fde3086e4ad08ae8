#include "Shells/Desktop/Shell/StatusNotifierItem.hpp"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <utility>

#include "Shells/Desktop/Shell/VirtualObject.hpp"

namespace ostrel {

namespace {

constexpr const char* interface = "org.kde.StatusNotifierItem";
constexpr const char* watcher = "org.kde.StatusNotifierWatcher";

QString serviceName() {
  return QStringLiteral("org.kde.StatusNotifierItem-%1-1").arg(QCoreApplication::applicationPid());
}

}  // namespace

StatusNotifierItem::StatusNotifierItem(DesktopBus& bus, const QString& menuPath, Log& log,
                                       std::function<void(QPoint)> activated)
    : bus_(bus), menuPath_(menuPath), log_(log), activated_(std::move(activated)) {
  registerDBusTypes();
  bus_.connection().registerVirtualObject(QLatin1String(path), this);
  // A new watcher may replace another without a moment when the name has no owner.
  QObject::connect(&bus_, &DesktopBus::ownerChanged, this, [this](const QString& name, const QString& owner) {
    if (name == QLatin1String(watcher) && !owner.isEmpty()) registerAtWatcher();
  });
  bus_.whenJoined(this, [this] {
    bus_.watchOwner(QLatin1String(watcher));
    requestNameAndRegister();
  });
}

StatusNotifierItem::~StatusNotifierItem() {
  bus_.connection().unregisterObject(QLatin1String(path));
  // Hosts remove the item when its name is released.
  if (isShown_ && bus_.isJoined()) bus_.connection().send(busCall("ReleaseName") << serviceName());
}

void StatusNotifierItem::setPixmaps(std::function<QList<DBusPixmap>()> pixmaps) {
  pixmaps_ = std::move(pixmaps);
  emitChange("NewIcon");
}

void StatusNotifierItem::setTitle(const QString& title) {
  if (title == title_) return;
  title_ = title;
  emitChange("NewTitle");
}

void StatusNotifierItem::setToolTip(const QString& text) {
  if (text == toolTip_) return;
  toolTip_ = text;
  emitChange("NewToolTip");
}

void StatusNotifierItem::show() {
  if (std::exchange(isShown_, true)) return;
  requestNameAndRegister();
}

void StatusNotifierItem::requestNameAndRegister() {
  if (!isShown_ || !bus_.isJoined()) return;
  // The bus handles calls in their order, so the name is there when the watcher hears of it.
  bus_.connection().send(busCall("RequestName") << serviceName() << 0U);
  registerAtWatcher();
}

void StatusNotifierItem::registerAtWatcher() {
  if (!isShown_) return;
  const auto call =
      QDBusMessage::createMethodCall(QLatin1String(watcher), QStringLiteral("/StatusNotifierWatcher"),
                                     QLatin1String(watcher), QStringLiteral("RegisterStatusNotifierItem"))
      << serviceName();
  bus_.callAsync(this, call, [this](const QDBusMessage& answer) {
    if (answer.type() != QDBusMessage::ErrorMessage) return;
    if (std::exchange(hasLoggedMissingTray_, true)) return;
    log_.line("ostrel: no tray has taken the status notifier item yet: " +
              answer.errorMessage().toStdString());
  });
}

void StatusNotifierItem::emitChange(const char* signal) {
  if (!isShown_ || !bus_.isJoined()) return;
  bus_.connection().send(
      QDBusMessage::createSignal(QLatin1String(path), QLatin1String(interface), QLatin1String(signal)));
}

QVariantMap StatusNotifierItem::properties() const {
  const QVariant none = QVariant::fromValue(QList<DBusPixmap>());
  return {{QStringLiteral("Category"), QStringLiteral("SystemServices")},
          {QStringLiteral("Id"), QStringLiteral("ostrel-agent")},
          {QStringLiteral("Title"), title_},
          {QStringLiteral("Status"), QStringLiteral("Active")},
          {QStringLiteral("WindowId"), 0},
          {QStringLiteral("IconThemePath"), QString()},
          {QStringLiteral("IconName"), QString()},
          {QStringLiteral("IconPixmap"), pixmaps_ ? QVariant::fromValue(pixmaps_()) : none},
          {QStringLiteral("IconAccessibleDesc"), toolTip_},
          {QStringLiteral("OverlayIconName"), QString()},
          {QStringLiteral("OverlayIconPixmap"), none},
          {QStringLiteral("AttentionIconName"), QString()},
          {QStringLiteral("AttentionIconPixmap"), none},
          {QStringLiteral("AttentionMovieName"), QString()},
          {QStringLiteral("ToolTip"), QVariant::fromValue(DBusToolTip{QString(), {}, toolTip_, QString()})},
          {QStringLiteral("ItemIsMenu"), false},
          {QStringLiteral("Menu"), QVariant::fromValue(QDBusObjectPath(menuPath_))}};
}

QString StatusNotifierItem::introspect(const QString& /*path*/) const {
  QString xml = QStringLiteral("<interface name=\"org.kde.StatusNotifierItem\">");
  const auto add = [&](const char* name, const char* type) {
    xml += QStringLiteral("<property name=\"%1\" type=\"%2\" access=\"read\"/>")
               .arg(QLatin1String(name), QLatin1String(type));
  };
  for (const char* name :
       {"Category", "Id", "Title", "Status", "IconThemePath", "IconName", "IconAccessibleDesc",
        "OverlayIconName", "AttentionIconName", "AttentionMovieName"}) {
    add(name, "s");
  }
  for (const char* name : {"IconPixmap", "OverlayIconPixmap", "AttentionIconPixmap"}) add(name, "a(iiay)");
  add("WindowId", "i");
  add("ToolTip", "(sa(iiay)ss)");
  add("ItemIsMenu", "b");
  add("Menu", "o");
  for (const char* name : {"Activate", "SecondaryActivate", "ContextMenu"}) {
    xml += QStringLiteral(
               "<method name=\"%1\"><arg name=\"x\" type=\"i\" direction=\"in\"/>"
               "<arg name=\"y\" type=\"i\" direction=\"in\"/></method>")
               .arg(QLatin1String(name));
  }
  xml += QStringLiteral(
      "<method name=\"Scroll\"><arg name=\"delta\" type=\"i\" direction=\"in\"/>"
      "<arg name=\"orientation\" type=\"s\" direction=\"in\"/></method>");
  for (const char* name : {"NewTitle", "NewIcon", "NewToolTip"}) {
    xml += QStringLiteral("<signal name=\"%1\"/>").arg(QLatin1String(name));
  }
  return xml + QStringLiteral("</interface>");
}

bool StatusNotifierItem::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
  if (answerProperties(message, connection, QLatin1String(interface), properties())) return true;
  // Some hosts leave the interface of a call out.
  if (!message.interface().isEmpty() && message.interface() != QLatin1String(interface)) return false;
  const auto method = message.member();
  const bool isClick = method == QLatin1String("Activate") || method == QLatin1String("SecondaryActivate");
  if (isClick || method == QLatin1String("ContextMenu")) {
    if (message.signature() != QLatin1String("ii")) return refuse(message, connection);
    connection.send(message.createReply());
    if (isClick) activated_({message.arguments().at(0).toInt(), message.arguments().at(1).toInt()});
    return true;
  }
  if (method == QLatin1String("Scroll")) return connection.send(message.createReply());
  return false;
}

}  // namespace ostrel
