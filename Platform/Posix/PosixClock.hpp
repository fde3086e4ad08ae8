#pragma once

#include "Platform/Clock.hpp"

namespace ostrel {

/// The system's wall clock.
class PosixClock final : public Clock {
 public:
  Date now() const override;
};

}  // namespace ostrel
