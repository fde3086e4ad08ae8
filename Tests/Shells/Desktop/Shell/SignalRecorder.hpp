#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QStringList>

namespace ostrel {

/// Records the signals of one object on the bus.
class SignalRecorder final : public QObject {
  Q_OBJECT

 public:
  SignalRecorder(QDBusConnection connection, const QString& path, const QString& interface) {
    connection.connect(QString(), path, interface, QString(), this, SLOT(take(QDBusMessage)));
  }

  QStringList names() const {
    QStringList all;
    for (const auto& signal : signalsTaken) all.append(signal.member());
    return all;
  }

  QList<QDBusMessage> signalsTaken;

 private slots:
  void take(const QDBusMessage& message) { signalsTaken.append(message); }
};

}  // namespace ostrel
