#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "Shells/Desktop/ViewsPlugIn.hpp"

namespace ostrel {

/// An alert's window that records its calls. There is one at a time.
class FakeAlertView final : public AlertView {
 public:
  /// The calls to all windows of the test, and how the next is made. Each test starts with an empty one.
  struct Record {
    std::vector<Alert> alerts;
    std::vector<DesktopTheme> themes;  ///< of openings and of changes
    int windows = 0;
    int activations = 0;
    bool isShown = false;
    std::function<void(std::size_t)> closed;
    std::string failure;  ///< why no window can be made; empty when one can
  };

  static Record& record() {
    static Record all;
    return all;
  }

  static std::expected<std::unique_ptr<AlertView>, std::string> make(
      Log& /*log*/, std::function<void(std::size_t)> closed) {
    if (!record().failure.empty()) return std::unexpected(record().failure);
    record().closed = std::move(closed);
    record().windows += 1;
    return std::make_unique<FakeAlertView>();
  }

  ~FakeAlertView() override { record().isShown = false; }

  void open(const Alert& alert, const DesktopTheme& theme) override {
    record().isShown = true;
    record().alerts.push_back(alert);
    record().themes.push_back(theme);
  }
  void setTheme(const DesktopTheme& theme) override { record().themes.push_back(theme); }
  void activate() override { record().activations += 1; }

  /// The user presses that button.
  static void answer(std::size_t button) {
    record().isShown = false;
    record().closed(button);
  }
};

}  // namespace ostrel
