#include "Platform/Desktop/ViewsPlugIn.hpp"

#include "Platform/Desktop/Views/PanelPicture.hpp"
#include "Platform/Desktop/Views/PanelWindow.hpp"

extern "C" __attribute__((visibility("default"))) const ostrel::ViewsPlugIn ostrelViewsPlugIn;

extern "C" const ostrel::ViewsPlugIn ostrelViewsPlugIn{OSTREL_BUILD, ostrel::PanelWindow::make,
                                                       ostrel::panelPicture};
