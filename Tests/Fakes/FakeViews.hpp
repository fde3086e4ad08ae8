#pragma once

#include "Tests/Fakes/FakeAlertView.hpp"
#include "Tests/Fakes/FakeOnboardingView.hpp"
#include "Tests/Fakes/FakePanelView.hpp"

namespace ostrel {

/// The table of views that remember what they were told.
inline constexpr ViewsPlugIn fakeViews{.build = "",
                                       .makePanelView = FakePanelView::make,
                                       .drawPanel = nullptr,
                                       .makeOnboardingView = FakeOnboardingView::make,
                                       .drawOnboarding = nullptr,
                                       .makeAlertView = FakeAlertView::make,
                                       .drawAlert = nullptr};

}  // namespace ostrel
