#pragma once

#include <functional>
#include <string>

namespace ostrel {

enum class OnboardingAction;
struct OnboardingContent;

/// Events of the onboarding and repair window.
struct OnboardingWindowEvents {
  /// A button was pressed; with the text of the token field, which must not be stored.
  std::function<void(OnboardingAction, const std::string& token)> pressed;
  /// The window was closed, by the user or by `close`. Runs once.
  std::function<void()> closed;
};

/// The onboarding and repair window (NSWindow). Main thread.
class OnboardingWindow {
 public:
  virtual ~OnboardingWindow() = default;

  /// Opens the window in the middle of the screen and gives it the focus.
  virtual void open(const OnboardingContent& content, OnboardingWindowEvents events) = 0;

  /// Draws the content into the open window; unchanged parts are not drawn again.
  virtual void update(const OnboardingContent& content) = 0;

  /// Empties the token field.
  virtual void clearToken() = 0;

  virtual void close() = 0;
};

}  // namespace ostrel
