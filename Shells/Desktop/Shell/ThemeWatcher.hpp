#pragma once

#include <QDBusVariant>
#include <QObject>
#include <functional>

#include "Shells/Desktop/DesktopSettings.hpp"
#include "Shells/Desktop/Shell/DesktopBus.hpp"

namespace ostrel {

/// Follows the user's theme of the desktop by the settings portal of the session bus, which is asked without
/// waiting, and by the toolkit's palette and font.
class ThemeWatcher final : public QObject {
  Q_OBJECT

 public:
  ThemeWatcher(DesktopBus& bus, std::function<void()> changed);

  const DesktopTheme& theme() const { return theme_; }

 private:
  Q_SLOT void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);
  bool eventFilter(QObject* object, QEvent* event) override;
  void askPortal();
  void takeSetting(const QString& group, const QString& key, const QVariant& value);
  void takeToolkit();
  void publish();

  DesktopBus& bus_;
  std::function<void()> changed_;
  DesktopSettings settings_;
  DesktopTheme theme_;
};

}  // namespace ostrel
