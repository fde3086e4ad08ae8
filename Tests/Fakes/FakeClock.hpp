#pragma once

#include "Platform/Clock.hpp"

namespace ostrel {

/// A wall clock that the test moves.
class FakeClock final : public Clock {
 public:
  explicit FakeClock(Date start = Date(std::chrono::sys_days(std::chrono::year(2025) / 1 / 2)))
      : now_(start) {}

  Date now() const override { return now_; }
  void set(Date date) { now_ = date; }
  void advance(std::chrono::milliseconds duration) { now_ += duration; }

 private:
  Date now_;
};

}  // namespace ostrel
