#pragma once

#include "Platform/TimeFormat.hpp"

namespace ostrel {

/// English times of UTC.
class FakeTimeFormat final : public TimeFormat {
 public:
  std::string clockTime(Date date) const override;
  std::string shortDate(Date date) const override;
};

}  // namespace ostrel
