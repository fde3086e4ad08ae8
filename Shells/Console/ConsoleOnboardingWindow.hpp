#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "OstrelAgent/Onboarding/OnboardingContent.hpp"
#include "Platform/OnboardingWindow.hpp"
#include "Platform/StandardStreams.hpp"
#include "Shells/Console/ConsolePress.hpp"

namespace ostrel {

/// The onboarding window as text on standard output, printed when it opens and whenever it changes.
class ConsoleOnboardingWindow final : public OnboardingWindow {
 public:
  explicit ConsoleOnboardingWindow(StandardStreams& streams) : streams_(streams) {}

  void open(const OnboardingContent& content, OnboardingWindowEvents events) override;
  void update(const OnboardingContent& content) override;
  void clearToken() override { token_.clear(); }
  void close() override;

  bool isOpen() const { return shown_.has_value(); }

  /// Presses the button with that number, from 1.
  ConsolePress press(std::size_t number);

  /// Types the token and enrols, as far as the window asks for one.
  ConsolePress enterToken(std::string token);

  /// Prints the open window once more.
  void reprint() const;

 private:
  ConsolePress press(const OnboardingButton& button);

  StandardStreams& streams_;
  OnboardingWindowEvents events_;
  std::optional<OnboardingContent> shown_;
  std::string token_;
};

}  // namespace ostrel
