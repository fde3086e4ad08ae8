#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace ostrel {

/// A question or a message that the user has to acknowledge.
struct Alert {
  std::string title;
  std::string text;
  std::vector<std::string> buttons;  ///< at least one; the Return key presses the first

  bool operator==(const Alert&) const = default;
};

/// Modal alerts (NSAlert). Main thread.
class Alerts {
 public:
  virtual ~Alerts() = default;

  /// Shows the alert after those already shown. The completion gets the index of the pressed button, or of
  /// the last one when the alert is closed; it runs once, never inside the call.
  virtual void show(const Alert& alert, std::function<void(std::size_t)> completion) = 0;
};

}  // namespace ostrel
