#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace ostrel {

/// A question, or news that the person has to take note of.
struct Alert {
  std::string title;
  std::string text;
  std::vector<std::string> buttons;  ///< at least one; the first is that of the Return key

  bool operator==(const Alert&) const = default;
};

/// Modal alerts (NSAlert). Main thread.
class Alerts {
 public:
  virtual ~Alerts() = default;

  /// Shows the alert, after those that are shown already. The completion gets the index of the button, the
  /// last one's when the alert is closed without any; it runs once, never inside the call.
  virtual void show(const Alert& alert, std::function<void(std::size_t)> completion) = 0;
};

}  // namespace ostrel
