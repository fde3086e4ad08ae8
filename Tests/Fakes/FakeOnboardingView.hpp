#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Shells/Desktop/ViewsPlugIn.hpp"

namespace ostrel {

/// An onboarding window that records its calls. There is one at a time.
class FakeOnboardingView final : public OnboardingView {
 public:
  /// The calls to all windows of the test, and how the next is made. Each test starts with an empty one.
  struct Record {
    std::vector<OnboardingContent> contents;  ///< of openings and of updates
    std::vector<DesktopTheme> themes;         ///< of openings and of changes
    int clearings = 0;
    int activations = 0;
    bool isShown = false;
    OnboardingWindowEvents events;
    std::string failure;  ///< why no window can be made; empty when one can
  };

  static Record& record() {
    static Record all;
    return all;
  }

  static std::expected<std::unique_ptr<OnboardingView>, std::string> make(Log& /*log*/,
                                                                          OnboardingWindowEvents events) {
    if (!record().failure.empty()) return std::unexpected(record().failure);
    record().events = std::move(events);
    return std::make_unique<FakeOnboardingView>();
  }

  ~FakeOnboardingView() override { record().isShown = false; }

  void open(const OnboardingContent& content, const DesktopTheme& theme) override {
    record().isShown = true;
    record().contents.push_back(content);
    record().themes.push_back(theme);
  }
  void update(const OnboardingContent& content) override { record().contents.push_back(content); }
  void clearToken() override { record().clearings += 1; }
  void setTheme(const DesktopTheme& theme) override { record().themes.push_back(theme); }
  void activate() override { record().activations += 1; }
  void close() override {
    if (std::exchange(record().isShown, false)) record().events.closed();
  }
};

}  // namespace ostrel
