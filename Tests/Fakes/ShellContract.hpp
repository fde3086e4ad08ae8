#pragma once

#include <gtest/gtest.h>

#include "OstrelAgent/Panel/PanelContent.hpp"
#include "OstrelAgent/Status/MenuBarIcon.hpp"
#include "Platform/Screens.hpp"
#include "Platform/StatusItem.hpp"

namespace ostrel {

/// What every implementation of `Screens` does.
inline void expectShownFromOpeningToClosing(Screens& screens) {
  PanelContent first;
  first.header.word = "Protected";
  PanelContent second;
  second.header.word = "Not protected";
  EXPECT_FALSE(screens.isPanelShown());
  for (int round = 0; round < 2; ++round) {
    screens.openPanel(first);
    screens.updatePanel(second);
    EXPECT_TRUE(screens.isPanelShown());
    screens.closePanel();
    EXPECT_FALSE(screens.isPanelShown());
  }
}

/// What every implementation of `StatusItem` does; `click` clicks on it.
template <class Click>
void expectEveryClickIsReported(StatusItem& item, Click click) {
  int clicks = 0;
  item.install({.clicked = [&] { ++clicks; }, .appearanceChanged = [] {}, .menuPressed = {}});
  item.show({menubarpicture::Title{"🛡️"}, "text"});
  click();
  click();
  EXPECT_EQ(clicks, 2);
}

}  // namespace ostrel
