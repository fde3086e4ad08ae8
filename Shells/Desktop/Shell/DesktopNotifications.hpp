#pragma once

#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <QStringList>
#include <chrono>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Platform/UserNotifications.hpp"
#include "Shells/Desktop/Shell/DesktopBus.hpp"

namespace ostrel {

/// Notifications by the desktop's notification daemon (org.freedesktop.Notifications), which is never waited
/// for. Where one runs or can be started the program counts as authorized, else as denied. Notifications
/// that still show at the end are closed, since their buttons would do nothing.
class DesktopNotifications final : public QObject, public UserNotifications {
  Q_OBJECT

 public:
  /// A notification that is not accepted within `timeout` has failed; should the daemon show it later, its
  /// buttons work all the same.
  explicit DesktopNotifications(DesktopBus& bus,
                                std::chrono::milliseconds timeout = std::chrono::seconds(25));
  DesktopNotifications(const DesktopNotifications&) = delete;
  DesktopNotifications& operator=(const DesktopNotifications&) = delete;
  ~DesktopNotifications() override;

  void readAuthorization(std::function<void(NotificationAuthorization)> completion) override;
  void requestAuthorization(std::function<void(std::expected<void, PlatformError>)> completion) override;
  void registerCategories(std::vector<NotificationCategory> categories) override;
  void onResponse(std::function<void(const NotificationResponse&)> receiver) override;
  void post(const UserNotification& notification,
            std::function<void(std::expected<void, PlatformError>)> completion) override;

 private:
  struct Post;
  using SharedPost = std::shared_ptr<Post>;

  struct Shown {
    std::string identifier;
    std::string category;
  };

  void askWhatCanStart(const std::function<void(NotificationAuthorization)>& completion);
  void askCapabilities(const SharedPost& post);
  void notify(const SharedPost& post, const QStringList& capabilities);
  QDBusMessage notifyCall(const UserNotification& notification, const QStringList& capabilities) const;
  void listen();
  void takeDaemon(const QString& name);
  void takeShown(uint number, const UserNotification& notification);
  uint numberOf(const std::string& identifier) const;
  QStringList actionsOf(const std::string& category) const;
  void close(uint number);
  std::optional<Shown> leave(uint number, const QDBusMessage& signal);
  void respond(const NotificationResponse& response) const;
  Q_SLOT void onAction(uint number, const QString& key, const QDBusMessage& signal);
  Q_SLOT void onClosed(uint number, uint reason, const QDBusMessage& signal);

  DesktopBus& bus_;
  std::chrono::milliseconds timeout_;
  std::vector<NotificationCategory> categories_;
  std::function<void(const NotificationResponse&)> receiver_;
  bool isListening_ = false;
  QString daemon_;               ///< unique bus name of the daemon that shows `shown_`
  std::map<uint, Shown> shown_;  ///< by the daemon's number
};

}  // namespace ostrel
