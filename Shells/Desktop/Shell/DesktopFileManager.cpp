#include "Shells/Desktop/Shell/DesktopFileManager.hpp"

#include <QByteArray>
#include <QDBusMessage>
#include <QStringList>
#include <QTimer>
#include <memory>
#include <utility>

namespace ostrel {

namespace {

/// Encoded byte by byte, since a path need not be UTF-8.
QString uriOf(const std::string& path) {
  return QStringLiteral("file://") +
         QString::fromLatin1(QByteArray::fromStdString(path).toPercentEncoding("/"));
}

QDBusMessage showCall(const QString& uri) {
  const QString noStartupId;
  return QDBusMessage::createMethodCall(
             QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
             QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"))
         << QStringList{uri} << noStartupId;
}

}  // namespace

DesktopFileManager::DesktopFileManager(DesktopBus& bus, std::function<std::string(std::string_view)> realPath,
                                       std::chrono::milliseconds timeout)
    : bus_(bus), realPath_(std::move(realPath)), timeout_(timeout) {}

void DesktopFileManager::reveal(const std::string& path, std::function<void(bool)> answered) {
  const auto waiting = std::make_shared<std::function<void(bool)>>(std::move(answered));
  const auto answer = [waiting](bool isShown) {
    if (const auto first = std::exchange(*waiting, nullptr)) first(isShown);
  };
  QTimer::singleShot(timeout_, this, [answer] { answer(false); });
  bus_.whenKnown(this, [this, uri = uriOf(realPath_(path)), waiting, answer] {
    const bool isGivenUp = !*waiting;
    if (isGivenUp) return;
    if (!bus_.isJoined()) return answer(false);
    bus_.callAsync(this, showCall(uri), [answer](const QDBusMessage& reply) {
      answer(reply.type() == QDBusMessage::ReplyMessage);
    });
  });
}

}  // namespace ostrel
