#pragma once

#include <QtQml/qqmlregistration.h>
#include <QFont>
#include <QObject>

#include "Shells/Desktop/DesktopTheme.hpp"

namespace ostrel {

/// The desktop's appearance and text size, for the QML of one engine.
class Theme : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_SINGLETON
  Q_PROPERTY(bool isDark MEMBER isDark_ NOTIFY isDarkChanged)
  Q_PROPERTY(double textScale MEMBER textScale_ NOTIFY textScaleChanged)
  Q_PROPERTY(QString codeFamily READ codeFamily CONSTANT)

 public:
  using QObject::QObject;

  void set(const DesktopTheme& theme);

  /// The desktop's monospaced font.
  QString codeFamily() const;

  /// Of the text in one line, in points.
  Q_INVOKABLE double widthOf(const QString& text, const QFont& font) const;

 signals:
  void isDarkChanged();
  void textScaleChanged();

 private:
  bool isDark_ = false;
  double textScale_ = 1;
};

}  // namespace ostrel
