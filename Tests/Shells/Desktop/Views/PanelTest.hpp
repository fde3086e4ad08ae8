#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "Shells/Desktop/ViewsPlugIn.hpp"
#include "Tests/Shells/Desktop/Views/ViewTest.hpp"

namespace ostrel {

/// A panel on a screen of 800 by 800. No test may leave something in it that an assistive tool cannot name.
class PanelTest : public ViewTest {
 protected:
  PanelTest();
  ~PanelTest() override;

  void open(const PanelContent& content);

  std::vector<PanelButton> pressed;
  std::function<void()> onPress;  ///< called within the press, where it is there
  int losses = 0;
  PanelAnchor anchor{{600, 10}, {0, 24, 800, 776}};
  std::unique_ptr<PanelView> panel;
};

/// A protected device: the content that the logic makes, in a panel with room for it.
PanelContent protectedContent();

/// A device with cards, an update and a component that needs attention.
PanelContent unprotectedContent();

}  // namespace ostrel
