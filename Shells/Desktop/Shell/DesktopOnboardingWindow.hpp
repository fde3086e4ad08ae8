#pragma once

#include <QObject>

#include <memory>

#include "Shells/Desktop/ShellPlugIn.hpp"

namespace ostrel {

/// The onboarding window as one of the Views plug-in, which is loaded when it opens. Where that cannot be
/// loaded, the window counts as closed at once, so that nobody waits for what they cannot see.
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
  void setLook(const DesktopLook& look);

 private:
  [[nodiscard]] std::expected<std::unique_ptr<OnboardingView>, std::string> makeView(
      OnboardingWindowEvents events);

  LoadViews loadViews_;
  Log& log_;
  std::unique_ptr<OnboardingView> view_;
  DesktopLook look_;
  QObject later_;  ///< ends what is posted with this
};

}  // namespace ostrel
