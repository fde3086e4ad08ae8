#include "Shells/Desktop/Shell/StatusItemMenu.hpp"

#include <QDBusMessage>
#include <QDBusVariant>
#include <utility>

#include "OstrelAgent/Text/TextDirection.hpp"
#include "Shells/Desktop/Shell/VirtualObject.hpp"

namespace ostrel {

namespace {

constexpr const char* interface = "com.canonical.dbusmenu";
constexpr int root = 0;

/// An underscore marks the letter of a shortcut; two are an underscore of the text.
QString menuLabel(const std::string& title) {
  return QString::fromStdString(title).replace(QLatin1Char('_'), QLatin1String("__"));
}

/// All titles are of one language.
QString directionName(const std::vector<PanelButton>& buttons) {
  const bool isRightToLeft =
      !buttons.empty() && directionOf(buttons.front().title) == TextDirection::rightToLeft;
  return isRightToLeft ? QStringLiteral("rtl") : QStringLiteral("ltr");
}

QVariantMap menuProperties(const std::vector<PanelButton>& buttons) {
  return {{QStringLiteral("Version"), 3U},
          {QStringLiteral("TextDirection"), directionName(buttons)},
          {QStringLiteral("Status"), QStringLiteral("normal")},
          {QStringLiteral("IconThemePath"), QStringList()}};
}

}  // namespace

StatusItemMenu::StatusItemMenu(DesktopBus& bus, std::function<void(const PanelButton&)> pressed)
    : bus_(bus), pressed_(std::move(pressed)) {
  registerDBusTypes();
  bus_.connection().registerVirtualObject(QLatin1String(path), this);
}

StatusItemMenu::~StatusItemMenu() { bus_.connection().unregisterObject(QLatin1String(path)); }

void StatusItemMenu::setButtons(std::vector<PanelButton> buttons) {
  if (buttons == buttons_) return;
  buttons_ = std::move(buttons);
  ++revision_;
  if (!bus_.isJoined()) return;
  auto signal = QDBusMessage::createSignal(QLatin1String(path), QLatin1String(interface),
                                           QStringLiteral("LayoutUpdated"));
  bus_.connection().send(signal << revision_ << root);
}

QString StatusItemMenu::introspect(const QString& /*path*/) const {
  return QStringLiteral(
      "<interface name=\"com.canonical.dbusmenu\">"
      "<property name=\"Version\" type=\"u\" access=\"read\"/>"
      "<property name=\"TextDirection\" type=\"s\" access=\"read\"/>"
      "<property name=\"Status\" type=\"s\" access=\"read\"/>"
      "<property name=\"IconThemePath\" type=\"as\" access=\"read\"/>"
      "<method name=\"GetLayout\"><arg type=\"i\" name=\"parentId\" direction=\"in\"/>"
      "<arg type=\"i\" name=\"recursionDepth\" direction=\"in\"/>"
      "<arg type=\"as\" name=\"propertyNames\" direction=\"in\"/>"
      "<arg type=\"u\" name=\"revision\" direction=\"out\"/>"
      "<arg type=\"(ia{sv}av)\" name=\"layout\" direction=\"out\"/></method>"
      "<method name=\"GetGroupProperties\"><arg type=\"ai\" name=\"ids\" direction=\"in\"/>"
      "<arg type=\"as\" name=\"propertyNames\" direction=\"in\"/>"
      "<arg type=\"a(ia{sv})\" name=\"properties\" direction=\"out\"/></method>"
      "<method name=\"GetProperty\"><arg type=\"i\" name=\"id\" direction=\"in\"/>"
      "<arg type=\"s\" name=\"name\" direction=\"in\"/><arg type=\"v\" name=\"value\" "
      "direction=\"out\"/></method>"
      "<method name=\"Event\"><arg type=\"i\" name=\"id\" direction=\"in\"/>"
      "<arg type=\"s\" name=\"eventId\" direction=\"in\"/><arg type=\"v\" name=\"data\" direction=\"in\"/>"
      "<arg type=\"u\" name=\"timestamp\" direction=\"in\"/></method>"
      "<method name=\"EventGroup\"><arg type=\"a(isvu)\" name=\"events\" direction=\"in\"/>"
      "<arg type=\"ai\" name=\"idErrors\" direction=\"out\"/></method>"
      "<method name=\"AboutToShow\"><arg type=\"i\" name=\"id\" direction=\"in\"/>"
      "<arg type=\"b\" name=\"needUpdate\" direction=\"out\"/></method>"
      "<method name=\"AboutToShowGroup\"><arg type=\"ai\" name=\"ids\" direction=\"in\"/>"
      "<arg type=\"ai\" name=\"updatesNeeded\" direction=\"out\"/>"
      "<arg type=\"ai\" name=\"idErrors\" direction=\"out\"/></method>"
      "<signal name=\"ItemsPropertiesUpdated\"><arg type=\"a(ia{sv})\" name=\"updatedProps\"/>"
      "<arg type=\"a(ias)\" name=\"removedProps\"/></signal>"
      "<signal name=\"LayoutUpdated\"><arg type=\"u\" name=\"revision\"/><arg type=\"i\" "
      "name=\"parent\"/></signal>"
      "<signal name=\"ItemActivationRequested\"><arg type=\"i\" name=\"id\"/>"
      "<arg type=\"u\" name=\"timestamp\"/></signal>"
      "</interface>");
}

bool StatusItemMenu::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
  if (answerProperties(message, connection, QLatin1String(interface), menuProperties(buttons_))) return true;
  if (message.interface() != QLatin1String(interface)) return false;
  const auto signature = message.signature();
  const std::pair<const char*, const char*> methods[] = {
      {"GetLayout", "iias"},      {"GetGroupProperties", "aias"}, {"GetProperty", "is"},
      {"Event", "isvu"},          {"EventGroup", "a(isvu)"},      {"AboutToShow", "i"},
      {"AboutToShowGroup", "ai"},
  };
  for (const auto& [method, takes] : methods) {
    if (message.member() != QLatin1String(method)) continue;
    if (signature != QLatin1String(takes)) return refuse(message, connection);
    const auto reply = answer(message.member(), message.arguments());
    if (!reply) return refuse(message, connection);
    connection.send(message.createReply(*reply));
    return true;
  }
  return false;
}

/// Empty when there is no such item or property.
std::optional<QVariantList> StatusItemMenu::answer(const QString& method, const QVariantList& arguments) {
  const auto first = arguments.value(0);
  if (method == QLatin1String("GetLayout")) {
    if (!hasItem(first.toInt())) return std::nullopt;
    const auto item = itemOf(first.toInt(), arguments.value(1).toInt());
    return QVariantList{revision_, QVariant::fromValue(item)};
  }
  if (method == QLatin1String("GetGroupProperties")) {
    QList<DBusMenuProperties> items;
    auto ids = qdbus_cast<QList<int>>(first);
    if (ids.isEmpty()) {
      for (int id = root; hasItem(id); ++id) ids.append(id);
    }
    for (const int id : std::as_const(ids)) {
      if (hasItem(id)) items.append({id, propertiesOf(id)});
    }
    return QVariantList{QVariant::fromValue(items)};
  }
  if (method == QLatin1String("GetProperty")) {
    const auto value = propertiesOf(first.toInt()).value(arguments.value(1).toString());
    if (!value.isValid()) return std::nullopt;
    return QVariantList{QVariant::fromValue(QDBusVariant(value))};
  }
  if (method == QLatin1String("Event")) {
    handleEvent(first.toInt(), arguments.value(1).toString());
    return QVariantList();
  }
  if (method == QLatin1String("EventGroup")) {
    QList<int> unknown;
    for (const auto& event : qdbus_cast<QList<DBusMenuEvent>>(first)) {
      if (!hasItem(event.id)) unknown.append(event.id);
      handleEvent(event.id, event.name);
    }
    return QVariantList{QVariant::fromValue(unknown)};
  }
  if (method == QLatin1String("AboutToShow")) return QVariantList{false};
  return QVariantList{QVariant::fromValue(QList<int>()), QVariant::fromValue(QList<int>())};
}

bool StatusItemMenu::hasItem(int id) const { return id >= root && id <= static_cast<int>(buttons_.size()); }

QVariantMap StatusItemMenu::propertiesOf(int id) const {
  if (id == root) return {{QStringLiteral("children-display"), QStringLiteral("submenu")}};
  if (!hasItem(id)) return {};
  const auto& button = buttons_[static_cast<std::size_t>(id - 1)];
  return {{QStringLiteral("label"), menuLabel(button.title)},
          {QStringLiteral("enabled"), button.isEnabled},
          {QStringLiteral("visible"), true}};
}

DBusMenuItem StatusItemMenu::itemOf(int id, int depth) const {
  DBusMenuItem item{id, propertiesOf(id), {}};
  if (id == root && depth != 0) {
    for (int child = 1; hasItem(child); ++child) item.children.append({child, propertiesOf(child), {}});
  }
  return item;
}

void StatusItemMenu::handleEvent(int id, const QString& name) {
  if (name != QLatin1String("clicked") || id == root || !hasItem(id)) return;
  // A copy, since the press may change the menu.
  const auto button = buttons_[static_cast<std::size_t>(id - 1)];
  if (button.isEnabled) pressed_(button);
}

}  // namespace ostrel
