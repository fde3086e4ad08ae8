#pragma once

#include "Platform/Log.hpp"

namespace ostrel {

/// The log as lines of standard error, each written in one piece.
class PosixLog final : public Log {
 public:
  void line(std::string_view text) override;
};

}  // namespace ostrel
