#pragma once

#include <QObject>

#include <deque>
#include <memory>

#include "Shells/Desktop/ShellPlugIn.hpp"

namespace ostrel {

/// Alerts as windows of the Views plug-in, one at a time. Where that cannot be loaded, an alert counts as
/// closed by its last button, since no user could answer it.
class DesktopAlerts final : public Alerts {
 public:
  using LoadViews = std::function<std::expected<const ViewsPlugIn*, std::string>()>;

  /// `opens` is called before each alert that opens.
  DesktopAlerts(LoadViews loadViews, Log& log, std::function<void()> opens)
      : loadViews_(std::move(loadViews)), log_(log), opens_(std::move(opens)) {}

  void show(const Alert& alert, std::function<void(std::size_t)> completion) override;

  /// Brings the open alert to the front; false when there is none.
  bool activate();
  void setTheme(const DesktopTheme& theme);

 private:
  struct Waiting {
    Alert alert;
    std::function<void(std::size_t)> completion;
  };

  [[nodiscard]] std::expected<void, std::string> makeView();
  void openFirst();
  void finishLater(std::size_t button);
  void finish(std::size_t button);

  LoadViews loadViews_;
  Log& log_;
  std::function<void()> opens_;
  std::deque<Waiting> waiting_;  ///< the first is the one that is shown
  std::unique_ptr<AlertView> view_;
  DesktopTheme theme_;
  QObject later_;  ///< the context of posted calls, which end with it
};

}  // namespace ostrel
