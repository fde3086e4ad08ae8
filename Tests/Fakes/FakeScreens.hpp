#pragma once

#include <gtest/gtest.h>

#include <vector>

#include "OstrelAgent/Panel/PanelContent.hpp"
#include "Platform/Screens.hpp"

namespace ostrel {

/// A panel that remembers every content it was given.
class FakeScreens final : public Screens {
 public:
  void onPanelButton(std::function<void(const PanelButton&)> pressed) override {
    pressed_ = std::move(pressed);
  }

  bool isPanelShown() const override { return isShown; }

  void openPanel(const PanelContent& content) override {
    isShown = true;
    panels.push_back(content);
  }

  void updatePanel(const PanelContent& content) override {
    if (!isShown) ADD_FAILURE() << "a panel is updated that is not open";
    panels.push_back(content);
  }

  void closePanel() override { isShown = false; }

  std::optional<double> visibleHeight() const override { return height; }

  std::vector<PanelContent> panels;  ///< contents of opening and updating, in order
  std::optional<double> height = 875;
  bool isShown = false;

  /// Throws when no callback is set.
  void press(const PanelButton& button) const { pressed_(button); }

 private:
  std::function<void(const PanelButton&)> pressed_;
};

}  // namespace ostrel
