#pragma once

#include <deque>
#include <utility>

#include "Platform/Alerts.hpp"

namespace ostrel {

/// Alerts that stay until the test presses a button.
class FakeAlerts final : public Alerts {
 public:
  void show(const Alert& alert, std::function<void(std::size_t)> completion) override {
    shown.push_back(alert);
    completions_.push_back(std::move(completion));
  }

  /// Presses a button of the oldest alert; throws when none is shown.
  void press(std::size_t button) {
    const auto completion = std::move(completions_.at(0));
    completions_.pop_front();
    shown.pop_front();
    completion(button);
  }

  std::deque<Alert> shown;  ///< those that wait for the user, oldest first

 private:
  std::deque<std::function<void(std::size_t)>> completions_;
};

}  // namespace ostrel
