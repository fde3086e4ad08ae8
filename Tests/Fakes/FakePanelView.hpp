#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "Shells/Desktop/ViewsPlugIn.hpp"

namespace ostrel {

/// A panel's window that records its calls. There is one at a time.
class FakePanelView final : public PanelView {
 public:
  /// The calls to all windows of the test, and how the next is made. Each test starts with an empty one.
  struct Record {
    std::vector<PanelAnchor> anchors;
    std::vector<DesktopTheme> themes;  ///< of openings and of changes while open
    std::vector<PanelContent> updates;
    int windows = 0;
    bool isShown = false;
    PanelViewEvents events;
    std::string failure;  ///< why no window can be made; empty when one can
  };

  static Record& record() {
    static Record all;
    return all;
  }

  static std::expected<std::unique_ptr<PanelView>, std::string> make(Log& /*log*/, PanelViewEvents events) {
    if (!record().failure.empty()) return std::unexpected(record().failure);
    record().events = std::move(events);
    record().windows += 1;
    return std::make_unique<FakePanelView>();
  }

  ~FakePanelView() override { record().isShown = false; }

  bool isShown() const override { return record().isShown; }
  void open(const PanelContent& /*content*/, const PanelAnchor& anchor, const DesktopTheme& theme) override {
    record().isShown = true;
    record().anchors.push_back(anchor);
    record().themes.push_back(theme);
  }
  void update(const PanelContent& content) override { record().updates.push_back(content); }
  void setTheme(const DesktopTheme& theme) override { record().themes.push_back(theme); }
  void close() override { record().isShown = false; }

  /// The user turns to another window.
  static void loseFocus() {
    record().isShown = false;
    record().events.lostFocus();
  }
};

}  // namespace ostrel
