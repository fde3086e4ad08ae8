#pragma once

#include <QQuickWindow>

#include "Shells/Desktop/Views/Common/Scene.hpp"
#include "Shells/Desktop/Views/Onboarding/OnboardingState.hpp"
#include "Shells/Desktop/ViewsPlugIn.hpp"

namespace ostrel {

/// The onboarding and repair window, with a frame and a close box.
class OnboardingViewWindow final : public OnboardingView {
 public:
  [[nodiscard]] static std::expected<std::unique_ptr<OnboardingView>, std::string> make(
      Log& log, OnboardingWindowEvents events);

  void open(const OnboardingContent& content, const DesktopTheme& theme) override;
  void update(const OnboardingContent& content) override;
  void clearToken() override { emit state_.tokenCleared(); }
  void setTheme(const DesktopTheme& theme) override;
  void activate() override;
  void close() override { window_.close(); }

 private:
  OnboardingViewWindow(Log& log, OnboardingWindowEvents events);

  void show(const OnboardingContent& content);
  void fit();
  void visibilityChanged();

  OnboardingWindowEvents events_;
  QQuickWindow window_;
  OnboardingState state_;
  Scene scene_;
  bool isOpen_ = false;
};

}  // namespace ostrel
