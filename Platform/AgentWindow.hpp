#pragma once

#include <functional>
#include <string>

namespace ostrel {

enum class AgentPage;
enum class ContainersCopy;
enum class ContainerSnippet;
enum class PageAction;
struct AgentWindowContent;
struct PanelButton;

/// The size of what a window holds, in points.
struct WindowSize {
  double width = 0;
  double height = 0;

  bool operator==(const WindowSize&) const = default;
};

/// What the user does in the agent window.
struct AgentWindowEvents {
  std::function<void(AgentPage)> pageChosen;
  std::function<void(const PanelButton&)> pressed;
  std::function<void(PageAction)> pageActionPressed;
  std::function<void(const std::string& runtime)> runtimeSelected;  ///< empty: none
  std::function<void(ContainerSnippet)> snippetChosen;
  std::function<bool(ContainersCopy)> copyPressed;  ///< false when nothing was copied
  std::function<bool(const std::string& runtime, bool isOn)>
      notifySwitched;                                ///< false when it was not stored
  std::function<bool(bool isOn)> allNotifySwitched;  ///< false when it was not stored
  std::function<void()> activated;                   ///< the window got the focus
  std::function<void(const WindowSize&)> resized;    ///< by the user
  std::function<void()> closed;                      ///< by the user or by `close`; or it could not open
};

/// The agent window (NSWindow). Main thread.
class AgentWindow {
 public:
  virtual ~AgentWindow() = default;

  /// Sets the receiver of what the user does. Call once.
  virtual void onEvents(AgentWindowEvents events) = 0;

  /// Opens the window in the middle of the screen, as large as wanted and as the screen has room for; an open
  /// one is brought to the front and draws the content.
  virtual void open(const AgentWindowContent& content, const WindowSize& size) = 0;

  /// Draws the content into the open window; unchanged parts are not drawn again.
  virtual void update(const AgentWindowContent& content) = 0;

  virtual void close() = 0;
};

}  // namespace ostrel
