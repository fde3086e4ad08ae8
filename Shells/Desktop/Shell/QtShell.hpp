#pragma once

#include <QSocketNotifier>
#include <atomic>
#include <functional>

#include "Shells/Desktop/ShellPlugIn.hpp"

namespace ostrel {

/// The toolkit's main loop, which serves the program's main queue and its signals, too. A signal ends it with
/// status 128 + signal.
class QtShell final : public Shell {
 public:
  QtShell(const DesktopServices& services, std::function<void()> activateWindow);

  void setMainMenu(const std::vector<Menu>& /*menus*/) override {}
  void setActivationPolicy(ActivationPolicy) override {}
  int run() override;
  void terminate(int status) override;

  /// For the other windows: a panel gets the focus by the click that opens it.
  void activate() override { activateWindow_(); }

 private:
  const DesktopServices& services_;
  std::function<void()> activateWindow_;
  QSocketNotifier queue_;
  QSocketNotifier signals_;
  std::atomic<bool> isTerminated_ = false;
};

}  // namespace ostrel
