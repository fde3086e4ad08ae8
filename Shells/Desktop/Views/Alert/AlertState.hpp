#pragma once

#include <QtQml/qqmlregistration.h>
#include <QStringList>

#include "Platform/Alerts.hpp"
#include "Shells/Desktop/Views/Common/WindowState.hpp"

namespace ostrel {

/// The properties and signals of an alert's QML.
class AlertState : public WindowState {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("The host makes it.")
  Q_PROPERTY(bool isRightToLeft MEMBER isRightToLeft_ NOTIFY shown)
  Q_PROPERTY(QString title MEMBER title_ NOTIFY shown)
  Q_PROPERTY(QString text MEMBER text_ NOTIFY shown)
  Q_PROPERTY(QStringList buttons MEMBER buttons_ NOTIFY shown)

 public:
  static constexpr auto screen = "Alert/Alert.qml";
  static constexpr auto property = "alert";

  void show(const Alert& alert);

  Q_INVOKABLE void press(int button) { emit pressed(button); }

 signals:
  void shown();

  /// The window opens: at the top of its text, with the keyboard at the first button.
  void opened();

  void pressed(int button);

 private:
  bool isRightToLeft_ = false;
  QString title_;
  QString text_;
  QStringList buttons_;
};

}  // namespace ostrel
