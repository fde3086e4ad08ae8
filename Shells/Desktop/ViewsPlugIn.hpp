#pragma once

#include <cstddef>
#include <expected>
#include <functional>
#include <memory>
#include <string>

#include "OstrelAgent/Onboarding/OnboardingContent.hpp"
#include "OstrelAgent/Panel/PanelContent.hpp"
#include "OstrelAgent/Window/AgentWindowContent.hpp"
#include "Platform/AgentWindow.hpp"
#include "Platform/Alerts.hpp"
#include "Platform/Log.hpp"
#include "Platform/OnboardingWindow.hpp"
#include "Shells/Desktop/DesktopTheme.hpp"
#include "Shells/Desktop/PanelPlace.hpp"

namespace ostrel {

/// The panel as a window. Main thread, after the toolkit's application object.
class PanelView {
 public:
  virtual ~PanelView() = default;

  virtual bool isShown() const = 0;
  virtual void open(const PanelContent& content, const PanelAnchor& anchor, const DesktopTheme& theme) = 0;

  /// Draws what differs from the content shown; nothing when it is closed.
  virtual void update(const PanelContent& content) = 0;
  virtual void setTheme(const DesktopTheme& theme) = 0;
  virtual void close() = 0;
};

/// What a panel's window calls.
struct PanelViewEvents {
  std::function<void(const PanelButton&)> pressed;
  std::function<void()> lostFocus;  ///< the window has closed because another one got the focus
};

/// The onboarding and repair window. Main thread, after the toolkit's application object.
class OnboardingView {
 public:
  virtual ~OnboardingView() = default;

  /// In the middle of the screen, with the focus.
  virtual void open(const OnboardingContent& content, const DesktopTheme& theme) = 0;

  /// Draws what differs from the content shown; nothing when it is closed.
  virtual void update(const OnboardingContent& content) = 0;

  /// Empties the token field, which no content touches.
  virtual void clearToken() = 0;
  virtual void setTheme(const DesktopTheme& theme) = 0;

  /// Brings the open window to the front and gives it the focus.
  virtual void activate() = 0;
  virtual void close() = 0;
};

/// An alert as a modal window. Main thread, after the toolkit's application object.
class AlertView {
 public:
  virtual ~AlertView() = default;

  /// In the middle of the screen, with the focus, above the panel. One alert at a time.
  virtual void open(const Alert& alert, const DesktopTheme& theme) = 0;
  virtual void setTheme(const DesktopTheme& theme) = 0;

  /// Brings the open alert to the front and gives it the focus.
  virtual void activate() = 0;
};

/// The agent window. Main thread, after the toolkit's application object.
class AgentWindowView {
 public:
  virtual ~AgentWindowView() = default;

  /// In the middle of the screen, with the focus; an open window comes to the front and draws the content.
  virtual void open(const AgentWindowContent& content, const WindowSize& size, const DesktopTheme& theme) = 0;

  /// Draws what differs from the content shown; nothing when it is closed.
  virtual void update(const AgentWindowContent& content) = 0;
  virtual void setTheme(const DesktopTheme& theme) = 0;
  virtual void close() = 0;
};

/// The one symbol of the Views plug-in, `ostrelViewsPlugIn`.
struct ViewsPlugIn {
  const char* build;  ///< the build it belongs to; stays the first member

  /// A panel that is not open yet; a sentence when the views cannot be loaded.
  std::expected<std::unique_ptr<PanelView>, std::string> (*makePanelView)(Log& log, PanelViewEvents events);

  /// The panel as a PNG file.
  std::expected<std::string, std::string> (*drawPanel)(const PanelContent& content, const DesktopTheme& theme,
                                                       Log& log);

  /// A window that is not open yet; a sentence when the views cannot be loaded. Its `closed` comes once for
  /// each time that it was open.
  std::expected<std::unique_ptr<OnboardingView>, std::string> (*makeOnboardingView)(
      Log& log, OnboardingWindowEvents events);

  /// What the window holds as a PNG file.
  std::expected<std::string, std::string> (*drawOnboarding)(const OnboardingContent& content,
                                                            const DesktopTheme& theme, Log& log);

  /// A window that is not open yet; a sentence when the views cannot be loaded. `closed` comes once for each
  /// time that it was open, with the index of the button, the last one's when there was none.
  std::expected<std::unique_ptr<AlertView>, std::string> (*makeAlertView)(
      Log& log, std::function<void(std::size_t)> closed);

  /// What the alert's window holds as a PNG file.
  std::expected<std::string, std::string> (*drawAlert)(const Alert& alert, const DesktopTheme& theme,
                                                       Log& log);

  /// A window that is not open yet, made for the content that it will open with; a sentence when the views
  /// cannot be loaded. Its `closed` comes once for each time that it was open.
  std::expected<std::unique_ptr<AgentWindowView>, std::string> (*makeAgentWindowView)(
      Log& log, AgentWindowEvents events, const AgentWindowContent& content, const DesktopTheme& theme);

  /// What the window holds as a PNG file, in that size.
  std::expected<std::string, std::string> (*drawAgentWindow)(const AgentWindowContent& content,
                                                             const WindowSize& size,
                                                             const DesktopTheme& theme, Log& log);
};

}  // namespace ostrel
