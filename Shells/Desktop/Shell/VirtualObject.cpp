#include "Shells/Desktop/Shell/VirtualObject.hpp"

#include <QDBusError>
#include <QDBusVariant>

namespace ostrel {

bool answerProperties(const QDBusMessage& message, const QDBusConnection& connection,
                      const QString& interface, const QVariantMap& properties) {
  if (message.interface() != QLatin1String("org.freedesktop.DBus.Properties")) return false;
  const auto arguments = message.arguments();
  if (arguments.value(0).toString() != interface) return false;
  if (message.member() == QLatin1String("GetAll")) {
    return connection.send(message.createReply(QVariant(properties)));
  }
  if (message.member() != QLatin1String("Get")) return false;
  const auto value = properties.constFind(arguments.value(1).toString());
  if (value == properties.constEnd()) {
    return connection.send(
        message.createErrorReply(QDBusError::UnknownProperty, QStringLiteral("No such property")));
  }
  return connection.send(message.createReply(QVariant::fromValue(QDBusVariant(*value))));
}

bool refuse(const QDBusMessage& message, const QDBusConnection& connection) {
  connection.send(message.createErrorReply(QDBusError::InvalidArgs, QStringLiteral("Wrong arguments")));
  return true;
}

}  // namespace ostrel
