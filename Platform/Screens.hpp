#pragma once

#include <functional>
#include <optional>

namespace ostrel {

struct PanelButton;
struct PanelContent;

/// The popover below the status item (NSPopover). Main thread.
class Screens {
 public:
  virtual ~Screens() = default;

  /// Every press of one of the panel's buttons calls `pressed`.
  virtual void onPanelButton(std::function<void(const PanelButton&)> pressed) = 0;

  virtual bool isPanelShown() const = 0;

  /// Opens the panel below the status item.
  virtual void openPanel(const PanelContent& content) = 0;

  /// Draws the content into the open panel; unchanged parts are not drawn again.
  virtual void updatePanel(const PanelContent& content) = 0;

  virtual void closePanel() = 0;

  /// Height in points of the status item's screen without the menu bar; nullopt without a screen.
  virtual std::optional<double> visibleHeight() const = 0;
};

}  // namespace ostrel
