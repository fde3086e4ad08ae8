#include "Shells/Console/ConsoleOnboardingWindow.hpp"

#include <algorithm>
#include <utility>

#include "Shells/Console/OnboardingText.hpp"

namespace ostrel {

void ConsoleOnboardingWindow::open(const OnboardingContent& content, OnboardingWindowEvents events) {
  events_ = std::move(events);
  shown_ = content;
  reprint();
}

void ConsoleOnboardingWindow::update(const OnboardingContent& content) {
  if (shown_ == content) return;
  shown_ = content;
  reprint();
}

void ConsoleOnboardingWindow::close() {
  if (!shown_) return;
  shown_.reset();
  token_.clear();
  if (events_.closed) events_.closed();
}

ConsolePress ConsoleOnboardingWindow::press(std::size_t number) {
  if (!shown_) return ConsolePress::nothingOpen;
  const auto buttons = shown_->allButtons();
  if (number < 1 || number > buttons.size()) return ConsolePress::noSuchButton;
  return press(buttons[number - 1]);
}

ConsolePress ConsoleOnboardingWindow::enterToken(std::string token) {
  if (!shown_) return ConsolePress::nothingOpen;
  const auto buttons = shown_->allButtons();
  const auto enrol = std::ranges::find(buttons, OnboardingAction::enrol, &OnboardingButton::action);
  if (enrol == buttons.end()) return ConsolePress::noSuchButton;
  token_ = std::move(token);
  return press(*enrol);
}

ConsolePress ConsoleOnboardingWindow::press(const OnboardingButton& button) {
  if (!button.isEnabled) return ConsolePress::disabled;
  if (events_.pressed) events_.pressed(button.action, token_);
  return ConsolePress::done;
}

void ConsoleOnboardingWindow::reprint() const {
  if (shown_) streams_.writeOutput("\n" + onboardingText(*shown_));
}

}  // namespace ostrel
