#pragma once

#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "OstrelAgent/Onboarding/OnboardingContent.hpp"
#include "OstrelAgent/Panel/PanelContent.hpp"
#include "OstrelAgent/Status/MenuBarIcon.hpp"
#include "OstrelAgent/Window/AgentWindowContent.hpp"
#include "Platform/AgentWindow.hpp"
#include "Platform/Alerts.hpp"
#include "Platform/FileManager.hpp"
#include "Platform/Log.hpp"
#include "Platform/OnboardingWindow.hpp"
#include "Platform/Pasteboard.hpp"
#include "Platform/Screens.hpp"
#include "Platform/Shell.hpp"
#include "Platform/StatusItem.hpp"
#include "Platform/SystemWake.hpp"
#include "Platform/UserNotifications.hpp"
#include "Shells/Desktop/DesktopTheme.hpp"
#include "Shells/Desktop/ViewsPlugIn.hpp"

namespace ostrel {

/// What the desktop asks of its host. All of it outlives the desktop.
struct DesktopServices {
  int queueDescriptor = -1;  ///< readable when work of the main queue is due
  std::function<void()> processDueWork;
  int signalDescriptor = -1;  ///< readable when a signal wants the program to end
  std::function<std::optional<int>()> receivedSignal;
  std::function<std::string(std::string_view)> realPath;  ///< of a path of the program
  std::string resources;                                  ///< the bundle's folder of data files
  std::function<std::expected<const ViewsPlugIn*, std::string>()> loadViews;
  Log& log;
};

/// A shell with a screen. Main thread.
class Desktop {
 public:
  virtual ~Desktop() = default;

  virtual Shell& shell() = 0;
  virtual StatusItem& statusItem() = 0;
  virtual Screens& screens() = 0;
  virtual AgentWindow& agentWindow() = 0;
  virtual OnboardingWindow& onboardingWindow() = 0;
  virtual Alerts& alerts() = 0;
  virtual Pasteboard& pasteboard() = 0;
  virtual FileManager& fileManager() = 0;
  virtual UserNotifications& notifications() = 0;
  virtual SystemWake& systemWake() = 0;
};

/// Draws what the desktop would show, without one.
class DesktopPictures {
 public:
  virtual ~DesktopPictures() = default;

  /// PNG files; a sentence when one cannot be drawn. Pixels for a point of the icon are 1, 2 or 3.
  [[nodiscard]] virtual std::expected<std::string, std::string> icon(const MenuBarIcon& icon, int scale) = 0;
  [[nodiscard]] virtual std::expected<std::string, std::string> panel(const PanelContent& content,
                                                                      const DesktopTheme& theme) = 0;
  [[nodiscard]] virtual std::expected<std::string, std::string> onboarding(const OnboardingContent& content,
                                                                           const DesktopTheme& theme) = 0;
  [[nodiscard]] virtual std::expected<std::string, std::string> alert(const Alert& alert,
                                                                      const DesktopTheme& theme) = 0;
  [[nodiscard]] virtual std::expected<std::string, std::string> agentWindow(const AgentWindowContent& content,
                                                                            const WindowSize& size,
                                                                            const DesktopTheme& theme) = 0;
};

/// The one symbol of the Shell plug-in, `ostrelShellPlugIn`.
struct ShellPlugIn {
  const char* build;  ///< the build it belongs to; stays the first member

  /// Connects to the display; a sentence when there is none. Once a process.
  std::expected<std::unique_ptr<Desktop>, std::string> (*makeDesktop)(DesktopServices services);

  /// Pixels for a point are `scale`. Once a process, and never beside a desktop.
  std::unique_ptr<DesktopPictures> (*makePictures)(DesktopServices services, double scale);
};

}  // namespace ostrel
