#include "Platform/Desktop/ViewsPlugIn.hpp"

#include "Platform/Desktop/Views/AlertWindow.hpp"
#include "Platform/Desktop/Views/OnboardingViewWindow.hpp"
#include "Platform/Desktop/Views/PanelWindow.hpp"
#include "Platform/Desktop/Views/Picture.hpp"

extern "C" __attribute__((visibility("default"))) const ostrel::ViewsPlugIn ostrelViewsPlugIn;

extern "C" const ostrel::ViewsPlugIn ostrelViewsPlugIn{OSTREL_BUILD,
                                                       ostrel::PanelWindow::make,
                                                       ostrel::panelPicture,
                                                       ostrel::OnboardingViewWindow::make,
                                                       ostrel::onboardingPicture,
                                                       ostrel::AlertWindow::make,
                                                       ostrel::alertPicture};
