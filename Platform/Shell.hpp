#pragma once

#include <vector>

#include "Platform/MainMenu.hpp"

namespace ostrel {

enum class ActivationPolicy { regular, accessory };

/// The application and its main loop (NSApplication). Main thread.
class Shell {
 public:
  virtual ~Shell() = default;

  /// Regular applications show in the Dock and have a menu bar; accessory ones do not.
  virtual void setActivationPolicy(ActivationPolicy policy) = 0;

  /// Sets the menu bar of a regular application. Ignored on systems without one.
  virtual void setMainMenu(const std::vector<Menu>& menus) = 0;

  /// Runs the main loop until `terminate`; returns the exit status of the process.
  virtual int run() = 0;

  /// Makes `run` return the status after the current work. The first status counts. Any thread.
  virtual void terminate(int status = 0) = 0;

  /// Brings the application to the front.
  virtual void activate() = 0;
};

}  // namespace ostrel
