#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "OstrelAgent/Onboarding/OnboardingContent.hpp"
#include "Platform/OnboardingWindow.hpp"

namespace ostrel {

/// A window that remembers every content it was given.
class FakeOnboardingWindow final : public OnboardingWindow {
 public:
  void open(const OnboardingContent& content, OnboardingWindowEvents events) override {
    events_ = std::move(events);
    contents.push_back(content);
    isOpen = true;
  }

  void update(const OnboardingContent& content) override {
    if (!isOpen) ADD_FAILURE() << "a window is updated that is not open";
    contents.push_back(content);
  }

  void clearToken() override { typed.clear(); }

  void close() override {
    if (std::exchange(isOpen, false)) events_.closed();
  }

  /// Presses the button of that action; fails the test when the window shows none.
  void press(OnboardingAction action) {
    const auto buttons = contents.back().allButtons();
    if (std::ranges::find(buttons, action, &OnboardingButton::action) == buttons.end()) {
      ADD_FAILURE() << "no button for action " << static_cast<int>(action);
    }
    events_.pressed(action, typed);
  }

  const OnboardingContent& shown() const { return contents.at(contents.size() - 1); }

  std::vector<OnboardingContent> contents;  ///< of opening and updating, in order
  std::string typed;                        ///< the text in the token field
  bool isOpen = false;

 private:
  OnboardingWindowEvents events_;
};

}  // namespace ostrel
