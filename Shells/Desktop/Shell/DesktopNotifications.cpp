#include "Shells/Desktop/Shell/DesktopNotifications.hpp"

#include <QDBusError>
#include <QGuiApplication>
#include <QTimer>
#include <algorithm>
#include <utility>

namespace ostrel {

namespace {

const QString service = QStringLiteral("org.freedesktop.Notifications");
const QString path = QStringLiteral("/org/freedesktop/Notifications");
const QString defaultAction = QStringLiteral("default");  // a click on the body
constexpr int timeOfDaemon = -1;                          // it decides how long it shows a notification
constexpr uchar normalUrgency = 1;                        // of low, normal and critical
constexpr uint dismissedByUser = 2;                       // a reason of NotificationClosed

QString textOf(const std::string& text) { return QString::fromStdString(text); }

QDBusMessage daemonCall(const char* method) {
  return QDBusMessage::createMethodCall(service, path, service, QLatin1String(method));
}

PlatformError errorOf(QDBusError::ErrorType type, std::string description) {
  return {QDBusError::errorString(type).toStdString(), 0, std::move(description)};
}

PlatformError errorOf(const QDBusMessage& answer) {
  const QDBusError error(answer);
  PlatformError named{error.name().toStdString(), 0, error.message().toStdString()};
  switch (error.type()) {
    case QDBusError::ServiceUnknown:
      named.description = "there is no notification daemon";
      break;
    case QDBusError::NoReply:
      named.description = "the notification daemon does not answer";
      break;
    default:
      if (named.description.empty()) named.description = "the notification daemon has refused it";
  }
  return named;
}

QVariantMap hintsOf(const UserNotification& notification) {
  QVariantMap hints{{QStringLiteral("desktop-entry"), QStringLiteral("ostrel-agent")},
                    {QStringLiteral("urgency"), QVariant::fromValue(normalUrgency)}};
  // The prefix of categories that a program defines itself.
  if (!notification.category.empty())
    hints.insert(QStringLiteral("category"), QStringLiteral("x-") + textOf(notification.category));
  if (notification.sound == NotificationSound::standard) {
    hints.insert(QStringLiteral("sound-name"), QStringLiteral("message-new-instant"));
  } else {
    hints.insert(QStringLiteral("suppress-sound"), true);
  }
  return hints;
}

}  // namespace

struct DesktopNotifications::Post {
  UserNotification notification;
  std::function<void(std::expected<void, PlatformError>)> completion;

  void complete(const std::expected<void, PlatformError>& result) {
    if (const auto first = std::exchange(completion, nullptr)) first(result);
  }
};

DesktopNotifications::DesktopNotifications(DesktopBus& bus, std::chrono::milliseconds timeout)
    : bus_(bus), timeout_(timeout) {}

DesktopNotifications::~DesktopNotifications() {
  while (!shown_.empty()) close(shown_.begin()->first);
}

void DesktopNotifications::readAuthorization(std::function<void(NotificationAuthorization)> completion) {
  bus_.whenKnown(this, [this, completion = std::move(completion)] {
    if (!bus_.isJoined()) return completion(NotificationAuthorization::denied);
    bus_.callAsync(this, busCall("NameHasOwner") << service, [this, completion](const QDBusMessage& answer) {
      const bool runs = answer.signature() == QLatin1String("b") && answer.arguments().at(0).toBool();
      if (runs) return completion(NotificationAuthorization::authorized);
      askWhatCanStart(completion);
    });
  });
}

void DesktopNotifications::askWhatCanStart(const std::function<void(NotificationAuthorization)>& completion) {
  bus_.callAsync(this, busCall("ListActivatableNames"), [completion](const QDBusMessage& answer) {
    const bool canStart = answer.arguments().value(0).toStringList().contains(service);
    completion(canStart ? NotificationAuthorization::authorized : NotificationAuthorization::denied);
  });
}

void DesktopNotifications::requestAuthorization(
    std::function<void(std::expected<void, PlatformError>)> completion) {
  QTimer::singleShot(0, this, [completion = std::move(completion)] { completion({}); });
}

void DesktopNotifications::registerCategories(std::vector<NotificationCategory> categories) {
  categories_ = std::move(categories);
}

void DesktopNotifications::onResponse(std::function<void(const NotificationResponse&)> receiver) {
  receiver_ = std::move(receiver);
}

void DesktopNotifications::post(const UserNotification& notification,
                                std::function<void(std::expected<void, PlatformError>)> completion) {
  const auto post = std::make_shared<Post>(notification, std::move(completion));
  QTimer::singleShot(timeout_, this, [post] {
    post->complete(std::unexpected(errorOf(QDBusError::NoReply, "the notification daemon does not answer")));
  });
  bus_.whenKnown(this, [this, post] {
    if (bus_.isJoined()) return askCapabilities(post);
    post->complete(std::unexpected(errorOf(QDBusError::NoServer, "the session bus cannot be reached")));
  });
}

void DesktopNotifications::askCapabilities(const SharedPost& post) {
  listen();
  bus_.callAsync(this, daemonCall("GetCapabilities"), [this, post](const QDBusMessage& answer) {
    if (answer.type() == QDBusMessage::ErrorMessage) return post->complete(std::unexpected(errorOf(answer)));
    takeDaemon(answer.service());
    const bool isGivenUp = !post->completion;
    if (!isGivenUp) notify(post, answer.arguments().value(0).toStringList());
  });
}

void DesktopNotifications::notify(const SharedPost& post, const QStringList& capabilities) {
  const auto taken = [this, post](const QDBusMessage& answer) {
    if (answer.type() == QDBusMessage::ErrorMessage) return post->complete(std::unexpected(errorOf(answer)));
    if (answer.signature() != QLatin1String("u"))
      return post->complete(std::unexpected(
          errorOf(QDBusError::InvalidSignature, "the notification daemon answers something else")));
    takeDaemon(answer.service());
    takeShown(answer.arguments().at(0).toUInt(), post->notification);
    post->complete({});
  };
  // A daemon that answers late has shown it all the same.
  bus_.callAsync(this, notifyCall(post->notification, capabilities), taken, noTimeout);
}

QDBusMessage DesktopNotifications::notifyCall(const UserNotification& notification,
                                              const QStringList& capabilities) const {
  const auto body = textOf(notification.body);
  const bool isMarkup = capabilities.contains(QLatin1String("body-markup"));
  const bool hasActions = capabilities.contains(QLatin1String("actions"));
  return daemonCall("Notify") << QGuiApplication::applicationDisplayName()
                              << numberOf(notification.identifier) << QString() << textOf(notification.title)
                              << (isMarkup ? body.toHtmlEscaped() : body)
                              << (hasActions ? actionsOf(notification.category) : QStringList())
                              << hintsOf(notification) << timeOfDaemon;
}

void DesktopNotifications::listen() {
  if (std::exchange(isListening_, true)) return;
  // From any sender: for a well-known name the toolkit would ask the bus for its owner and wait.
  bus_.connection().connect({}, path, service, QStringLiteral("ActionInvoked"), this,
                            SLOT(onAction(uint, QString, QDBusMessage)));
  bus_.connection().connect({}, path, service, QStringLiteral("NotificationClosed"), this,
                            SLOT(onClosed(uint, uint, QDBusMessage)));
  bus_.subscribe(QStringLiteral("type='signal',sender='%1',path='%2',interface='%1'").arg(service, path));
}

/// Another daemon than before, such as one that was started again, counts from one again.
void DesktopNotifications::takeDaemon(const QString& name) {
  if (std::exchange(daemon_, name) != name) shown_.clear();
}

void DesktopNotifications::takeShown(uint number, const UserNotification& notification) {
  // The daemon may have shown it beside the one that it was to replace.
  const auto before = numberOf(notification.identifier);
  if (before != number) close(before);
  shown_.insert_or_assign(number, Shown{notification.identifier, notification.category});
}

/// Zero, which is no number, when none of that identifier is shown.
uint DesktopNotifications::numberOf(const std::string& identifier) const {
  const auto found =
      std::ranges::find(shown_, identifier, [](const auto& row) { return row.second.identifier; });
  return found == shown_.end() ? 0 : found->first;
}

/// The keys and labels of the buttons, each key before its label.
QStringList DesktopNotifications::actionsOf(const std::string& category) const {
  // With a label some daemons would show a button for the default action.
  QStringList all{defaultAction, QString()};
  const auto found = std::ranges::find(categories_, category, &NotificationCategory::identifier);
  if (found == categories_.end()) return all;
  for (const auto& action : found->actions) all << textOf(action.identifier) << textOf(action.title);
  return all;
}

void DesktopNotifications::close(uint number) {
  if (number == 0) return;
  shown_.erase(number);
  // By unique name: the well-known name may already be a later daemon's, which counts from one again.
  bus_.connection().send(QDBusMessage::createMethodCall(daemon_, path, service, "CloseNotification")
                         << number);
}

/// Forgets a notification that was answered and returns it; nullopt when it is none of this program's.
std::optional<DesktopNotifications::Shown> DesktopNotifications::leave(uint number,
                                                                       const QDBusMessage& signal) {
  if (signal.service() != daemon_) return std::nullopt;
  auto left = shown_.extract(number);
  if (left.empty()) return std::nullopt;
  return std::move(left.mapped());
}

void DesktopNotifications::onAction(uint number, const QString& key, const QDBusMessage& signal) {
  const auto shown = leave(number, signal);
  if (!shown) return;
  // Some daemons keep showing it, and a second press would have no effect.
  close(number);
  if (key == defaultAction) return respond({.category = shown->category});
  respond({NotificationResponse::Case::action, shown->category, key.toStdString()});
}

void DesktopNotifications::onClosed(uint number, uint reason, const QDBusMessage& signal) {
  const auto shown = leave(number, signal);
  if (shown && reason == dismissedByUser) respond({NotificationResponse::Case::dismissed, shown->category});
}

void DesktopNotifications::respond(const NotificationResponse& response) const {
  if (receiver_) receiver_(response);
}

}  // namespace ostrel
