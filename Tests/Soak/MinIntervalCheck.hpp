#pragma once

#include <chrono>
#include <optional>

#include "Platform/Date.hpp"

namespace ostrel {

/// How far apart events are.
class MinIntervalCheck {
 public:
  /// Takes an event; false when it comes sooner after the one before than that.
  bool take(Date now, std::chrono::milliseconds least) {
    const bool isFarEnough = !last_ || now - *last_ >= least;
    last_ = now;
    return isFarEnough;
  }

  /// The next event may come at any time.
  void forget() { last_.reset(); }

 private:
  std::optional<Date> last_;
};

}  // namespace ostrel
