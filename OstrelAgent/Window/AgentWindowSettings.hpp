#pragma once

#include "OstrelAgent/Window/AgentWindowModel.hpp"
#include "Platform/Log.hpp"
#include "Platform/UserDefaults.hpp"

namespace ostrel {

/// The agent window's page and size in the user defaults. Main thread.
class AgentWindowSettings {
 public:
  AgentWindowSettings(UserDefaults& defaults, Log& log) : defaults_(defaults), log_(log) {}

  /// Values that cannot be read count as absent; a size is never too small.
  AgentWindowModel read() const;

  // A failure is logged.
  void storePage(AgentPage page);
  void storeSize(const WindowSize& size);

 private:
  void store(const char* key, DefaultsValue value);

  UserDefaults& defaults_;
  Log& log_;
};

/// The size, or the smallest that the window may have.
WindowSize atLeastSmallest(const WindowSize& size);

}  // namespace ostrel
