#pragma once

#include "Platform/Date.hpp"

namespace ostrel {

/// The wall clock. Any thread.
class Clock {
 public:
  virtual ~Clock() = default;

  virtual Date now() const = 0;
};

}  // namespace ostrel
