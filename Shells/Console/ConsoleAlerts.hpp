#pragma once

#include <cstddef>
#include <deque>
#include <functional>

#include "Platform/Alerts.hpp"
#include "Platform/StandardStreams.hpp"
#include "Shells/Console/ConsolePress.hpp"

namespace ostrel {

/// Alerts as text on standard output with numbered buttons, one at a time.
class ConsoleAlerts final : public Alerts {
 public:
  explicit ConsoleAlerts(StandardStreams& streams) : streams_(streams) {}

  void show(const Alert& alert, std::function<void(std::size_t)> completion) override;

  bool isShown() const { return !waiting_.empty(); }

  /// Presses the button with that number, from 1, of the alert that is shown.
  ConsolePress press(std::size_t number);

 private:
  struct Waiting {
    Alert alert;
    std::function<void(std::size_t)> completion;
  };

  void print() const;

  StandardStreams& streams_;
  std::deque<Waiting> waiting_;  ///< the first is the one that is shown
};

}  // namespace ostrel
