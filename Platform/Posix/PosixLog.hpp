#pragma once

#include "Platform/Log.hpp"

namespace ostrel {

/// Writes log lines to standard error, each in one piece.
class PosixLog final : public Log {
 public:
  void line(std::string_view text) override;
};

}  // namespace ostrel
