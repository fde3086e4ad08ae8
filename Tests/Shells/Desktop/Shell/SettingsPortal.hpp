#pragma once

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QMap>
#include <QVariantMap>
#include <utility>

namespace ostrel {

/// The desktop's settings portal.
class SettingsPortal final : public QDBusVirtualObject {
 public:
  using Settings = QMap<QString, QVariantMap>;

  SettingsPortal(QDBusConnection connection, const Settings& settings)
      : answer(QVariant::fromValue(settings)), connection_(std::move(connection)) {
    qDBusRegisterMetaType<Settings>();
    connection_.registerVirtualObject(QStringLiteral("/org/freedesktop/portal/desktop"), this);
    connection_.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
  }
  SettingsPortal(const SettingsPortal&) = delete;
  SettingsPortal& operator=(const SettingsPortal&) = delete;
  ~SettingsPortal() override {
    connection_.unregisterObject(QStringLiteral("/org/freedesktop/portal/desktop"));
    connection_.unregisterService(QStringLiteral("org.freedesktop.portal.Desktop"));
  }

  void change(const QString& group, const QString& key, const QVariant& value) {
    auto signal = QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/portal/desktop"),
                                             QStringLiteral("org.freedesktop.portal.Settings"),
                                             QStringLiteral("SettingChanged"));
    connection_.send(signal << group << key << QVariant::fromValue(QDBusVariant(value)));
  }

  QString introspect(const QString& /*path*/) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    if (message.member() != QLatin1String("ReadAll")) return false;
    asked.append(message.arguments().value(0).toStringList());
    return !answer.isValid() || connection.send(message.createReply(answer));
  }

  QVariant answer;  ///< an invalid one is never sent
  QList<QStringList> asked;

 private:
  QDBusConnection connection_;
};

}  // namespace ostrel
