#pragma once

#include <QObject>

#include <memory>

#include "Shells/Desktop/ShellPlugIn.hpp"

namespace ostrel {

/// The onboarding window as one of the Views plug-in, which is loaded when it opens. Where that cannot be
/// loaded, the window counts as closed at once, since no user could answer it.
class DesktopOnboardingWindow final : public OnboardingWindow {
 public:
  using LoadViews = std::function<std::expected<const ViewsPlugIn*, std::string>()>;

  DesktopOnboardingWindow(LoadViews loadViews, Log& log) : loadViews_(std::move(loadViews)), log_(log) {}

  void open(const OnboardingContent& content, OnboardingWindowEvents events) override;
  void update(const OnboardingContent& content) override;
  void clearToken() override;
  void close() override;

  /// Brings the window to the front, where it is open.
  void activate();
  void setTheme(const DesktopTheme& theme);

 private:
  [[nodiscard]] std::expected<std::unique_ptr<OnboardingView>, std::string> makeView(
      OnboardingWindowEvents events);

  LoadViews loadViews_;
  Log& log_;
  std::unique_ptr<OnboardingView> view_;
  DesktopTheme theme_;
  QObject later_;  ///< the context of posted calls, which end with it
};

}  // namespace ostrel
