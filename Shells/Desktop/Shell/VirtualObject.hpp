#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QString>
#include <QVariantMap>

namespace ostrel {

/// Answers a call of org.freedesktop.DBus.Properties about an interface with read-only properties; false when
/// the message is no such call.
bool answerProperties(const QDBusMessage& message, const QDBusConnection& connection,
                      const QString& interface, const QVariantMap& properties);

/// Answers that the arguments are not those of the method; gives true.
bool refuse(const QDBusMessage& message, const QDBusConnection& connection);

}  // namespace ostrel
