#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QList>
#include <QStringList>
#include <utility>

namespace ostrel {

/// The desktop's file manager. It notes what it is to show.
class FileBrowser final : public QDBusVirtualObject {
 public:
  enum class Answer { shown, refusal, none };

  explicit FileBrowser(QDBusConnection connection) : connection_(std::move(connection)) {
    connection_.registerVirtualObject(QStringLiteral("/org/freedesktop/FileManager1"), this);
    connection_.registerService(QStringLiteral("org.freedesktop.FileManager1"));
  }
  FileBrowser(const FileBrowser&) = delete;
  FileBrowser& operator=(const FileBrowser&) = delete;
  ~FileBrowser() override {
    connection_.unregisterObject(QStringLiteral("/org/freedesktop/FileManager1"));
    connection_.unregisterService(QStringLiteral("org.freedesktop.FileManager1"));
  }

  /// Answers every call that it has not answered.
  void answerLate() {
    for (const auto& message : std::exchange(late_, {})) connection_.send(message.createReply());
  }

  QString introspect(const QString& /*path*/) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    const bool isAsked = message.interface() == QLatin1String("org.freedesktop.FileManager1") &&
                         message.member() == QLatin1String("ShowItems") &&
                         message.signature() == QLatin1String("ass");
    if (!isAsked || answer == Answer::refusal) return false;
    asked.append(message.arguments().at(0).toStringList());
    if (answer == Answer::shown) return connection.send(message.createReply());
    late_.append(message);
    return true;
  }

  Answer answer = Answer::shown;
  QList<QStringList> asked;

 private:
  QDBusConnection connection_;
  QList<QDBusMessage> late_;
};

}  // namespace ostrel
