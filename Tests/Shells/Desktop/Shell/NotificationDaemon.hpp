#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QStringList>
#include <QVariantMap>

namespace ostrel {

/// The desktop's notification daemon. It shows nothing, and numbers what it is given from one on.
class NotificationDaemon final : public QDBusVirtualObject {
 public:
  struct Notification {
    QString application;
    uint replaced = 0;
    QString title;
    QString body;
    QStringList actions;
    QVariantMap hints;
  };

  enum class Answer { asAsked, refusal, nonsense, none };

  explicit NotificationDaemon(QDBusConnection connection);
  NotificationDaemon(const NotificationDaemon&) = delete;
  NotificationDaemon& operator=(const NotificationDaemon&) = delete;
  ~NotificationDaemon() override;

  /// What a user does with a notification, and what the daemon does by itself.
  void press(uint number, const QString& key);
  void close(uint number, uint reason);

  /// Answers every notification that it has not answered, in their order.
  void answerLate();

  QString introspect(const QString& path) const override;
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

  QStringList capabilities{QStringLiteral("actions"), QStringLiteral("body")};
  Answer answerOfCapabilities = Answer::asAsked;
  Answer answerOfNotify = Answer::asAsked;
  bool canReplace = true;
  QList<Notification> notified;
  QList<uint> closings;  ///< that were asked for

 private:
  bool answer(const QDBusMessage& message, Answer how, const QVariant& value);
  void sendSignal(const char* signal, const QVariantList& values);
  QVariant take(const Notification& notification);

  QDBusConnection connection_;
  uint lastNumber_ = 0;
  QList<QDBusMessage> late_;
};

}  // namespace ostrel
