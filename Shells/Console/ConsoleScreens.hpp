#pragma once

#include <cstddef>
#include <functional>
#include <optional>

#include "OstrelAgent/Panel/PanelContent.hpp"
#include "Platform/Screens.hpp"
#include "Platform/StandardStreams.hpp"
#include "Shells/Console/ConsolePress.hpp"

namespace ostrel {

/// The panel as text on standard output, printed when it opens and whenever it changes while open.
class ConsoleScreens final : public Screens {
 public:
  explicit ConsoleScreens(StandardStreams& streams) : streams_(streams) {}

  void onPanelButton(std::function<void(const PanelButton&)> pressed) override {
    pressed_ = std::move(pressed);
  }
  bool isPanelShown() const override { return shown_.has_value(); }
  void openPanel(const PanelContent& content) override;
  void updatePanel(const PanelContent& content) override;
  void closePanel() override { shown_.reset(); }
  std::optional<double> visibleHeight() const override { return std::nullopt; }

  /// Presses the button with that number, from 1, of the open panel.
  ConsolePress press(std::size_t number) const;

  /// Prints the open panel once more.
  void reprint() const;

 private:
  StandardStreams& streams_;
  std::function<void(const PanelButton&)> pressed_;
  std::optional<PanelContent> shown_;
};

}  // namespace ostrel
