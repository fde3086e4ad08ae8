#include "Shells/Desktop/Shell/DBusTypes.hpp"

#include <QDBusMetaType>
#include <QDBusVariant>

namespace ostrel {

void registerDBusTypes() {
  // Slots are connected by the names of their types, and this name is known only once it was registered.
  qRegisterMetaType<QDBusVariant>();
  qDBusRegisterMetaType<DBusPixmap>();
  qDBusRegisterMetaType<QList<DBusPixmap>>();
  qDBusRegisterMetaType<DBusToolTip>();
  qDBusRegisterMetaType<DBusMenuItem>();
  qDBusRegisterMetaType<DBusMenuProperties>();
  qDBusRegisterMetaType<QList<DBusMenuProperties>>();
  qDBusRegisterMetaType<DBusMenuEvent>();
  qDBusRegisterMetaType<QList<DBusMenuEvent>>();
  qDBusRegisterMetaType<QList<int>>();
}

// Each returns its argument, as the toolkit's own operators do.
// NOLINTBEGIN(bugprone-return-const-ref-from-parameter)

QDBusArgument& operator<<(QDBusArgument& argument, const DBusPixmap& pixmap) {
  argument.beginStructure();
  argument << pixmap.width << pixmap.height << pixmap.bytes;
  argument.endStructure();
  return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, DBusPixmap& pixmap) {
  argument.beginStructure();
  argument >> pixmap.width >> pixmap.height >> pixmap.bytes;
  argument.endStructure();
  return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const DBusToolTip& toolTip) {
  argument.beginStructure();
  argument << toolTip.iconName << toolTip.pixmaps << toolTip.title << toolTip.text;
  argument.endStructure();
  return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, DBusToolTip& toolTip) {
  argument.beginStructure();
  argument >> toolTip.iconName >> toolTip.pixmaps >> toolTip.title >> toolTip.text;
  argument.endStructure();
  return argument;
}

// Children are variants of the same structure, since D-Bus has no recursive types.
QDBusArgument& operator<<(QDBusArgument& argument, const DBusMenuItem& item) {
  argument.beginStructure();
  argument << item.id << item.properties;
  argument.beginArray(QMetaType::fromType<QDBusVariant>());
  for (const auto& child : item.children) argument << QDBusVariant(QVariant::fromValue(child));
  argument.endArray();
  argument.endStructure();
  return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, DBusMenuItem& item) {
  argument.beginStructure();
  argument >> item.id >> item.properties;
  item.children.clear();
  argument.beginArray();
  while (!argument.atEnd()) {
    QDBusVariant child;
    argument >> child;
    item.children.append(qdbus_cast<DBusMenuItem>(child.variant().value<QDBusArgument>()));
  }
  argument.endArray();
  argument.endStructure();
  return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const DBusMenuProperties& item) {
  argument.beginStructure();
  argument << item.id << item.properties;
  argument.endStructure();
  return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, DBusMenuProperties& item) {
  argument.beginStructure();
  argument >> item.id >> item.properties;
  argument.endStructure();
  return argument;
}

// Neither the event's data nor its time says anything about a press.
QDBusArgument& operator<<(QDBusArgument& argument, const DBusMenuEvent& event) {
  argument.beginStructure();
  argument << event.id << event.name << QDBusVariant(QString()) << 0U;
  argument.endStructure();
  return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, DBusMenuEvent& event) {
  QDBusVariant data;
  uint time = 0;
  argument.beginStructure();
  argument >> event.id >> event.name >> data >> time;
  argument.endStructure();
  return argument;
}

// NOLINTEND(bugprone-return-const-ref-from-parameter)

}  // namespace ostrel
