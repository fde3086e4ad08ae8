#pragma once

#include <functional>
#include <string>

namespace ostrel {

enum class OnboardingAction;
struct OnboardingContent;

/// What the person does with the onboarding and repair window.
struct OnboardingWindowEvents {
  /// A button; with what stands in the token field, which no one else is to keep.
  std::function<void(OnboardingAction, const std::string& token)> pressed;
  /// The window is closed, by the person or by `close`. Once.
  std::function<void()> closed;
};

/// The onboarding and repair window (NSWindow). Main thread.
class OnboardingWindow {
 public:
  virtual ~OnboardingWindow() = default;

  /// Opens the window in the middle of the screen and gives it the focus.
  virtual void open(const OnboardingContent& content, OnboardingWindowEvents events) = 0;

  /// Draws the content into the open window; what has not changed is not drawn again.
  virtual void update(const OnboardingContent& content) = 0;

  /// Empties the token field.
  virtual void clearToken() = 0;

  virtual void close() = 0;
};

}  // namespace ostrel
