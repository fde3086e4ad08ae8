#pragma once

#include <QByteArray>
#include <QDBusArgument>
#include <QList>
#include <QString>
#include <QVariantMap>

namespace ostrel {

/// A picture as status notifier hosts take it, "(iiay)": ARGB, 32 bits a pixel, the highest byte first.
struct DBusPixmap {
  int width = 0;
  int height = 0;
  QByteArray bytes;

  bool operator==(const DBusPixmap&) const = default;
};

/// The tooltip of a status notifier item, "(sa(iiay)ss)".
struct DBusToolTip {
  QString iconName;
  QList<DBusPixmap> pixmaps;
  QString title;
  QString text;
};

/// One item of a menu with those below it, "(ia{sv}av)".
struct DBusMenuItem {
  int id = 0;
  QVariantMap properties;
  QList<DBusMenuItem> children;
};

/// The properties of one item of a menu, "(ia{sv})".
struct DBusMenuProperties {
  int id = 0;
  QVariantMap properties;
};

/// An event of a menu item, "(isvu)".
struct DBusMenuEvent {
  int id = 0;
  QString name;
};

/// Makes the types known to the bus. Call before any of them is sent, and before a slot takes one.
void registerDBusTypes();

QDBusArgument& operator<<(QDBusArgument& argument, const DBusPixmap& pixmap);
const QDBusArgument& operator>>(const QDBusArgument& argument, DBusPixmap& pixmap);
QDBusArgument& operator<<(QDBusArgument& argument, const DBusToolTip& toolTip);
const QDBusArgument& operator>>(const QDBusArgument& argument, DBusToolTip& toolTip);
QDBusArgument& operator<<(QDBusArgument& argument, const DBusMenuItem& item);
const QDBusArgument& operator>>(const QDBusArgument& argument, DBusMenuItem& item);
QDBusArgument& operator<<(QDBusArgument& argument, const DBusMenuProperties& item);
const QDBusArgument& operator>>(const QDBusArgument& argument, DBusMenuProperties& item);
QDBusArgument& operator<<(QDBusArgument& argument, const DBusMenuEvent& event);
const QDBusArgument& operator>>(const QDBusArgument& argument, DBusMenuEvent& event);

}  // namespace ostrel

Q_DECLARE_METATYPE(ostrel::DBusPixmap)
Q_DECLARE_METATYPE(ostrel::DBusToolTip)
Q_DECLARE_METATYPE(ostrel::DBusMenuItem)
Q_DECLARE_METATYPE(ostrel::DBusMenuProperties)
Q_DECLARE_METATYPE(ostrel::DBusMenuEvent)
