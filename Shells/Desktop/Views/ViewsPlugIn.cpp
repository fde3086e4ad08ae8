#include "Shells/Desktop/ViewsPlugIn.hpp"

#include "Shells/Desktop/Views/Alert/AlertWindow.hpp"
#include "Shells/Desktop/Views/Common/Picture.hpp"
#include "Shells/Desktop/Views/Onboarding/OnboardingViewWindow.hpp"
#include "Shells/Desktop/Views/Panel/PanelWindow.hpp"
#include "Shells/Desktop/Views/Window/AgentViewWindow.hpp"

extern "C" __attribute__((visibility("default"))) const ostrel::ViewsPlugIn ostrelViewsPlugIn;

extern "C" const ostrel::ViewsPlugIn ostrelViewsPlugIn{OSTREL_BUILD,
                                                       ostrel::PanelWindow::make,
                                                       ostrel::panelPicture,
                                                       ostrel::OnboardingViewWindow::make,
                                                       ostrel::onboardingPicture,
                                                       ostrel::AlertWindow::make,
                                                       ostrel::alertPicture,
                                                       ostrel::AgentViewWindow::make,
                                                       ostrel::agentWindowPicture};
