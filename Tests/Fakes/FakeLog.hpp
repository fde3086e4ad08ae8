#pragma once

#include <string>
#include <vector>

#include "Platform/Log.hpp"

namespace ostrel {

/// The lines that were logged, by one thread.
class FakeLog final : public Log {
 public:
  void line(std::string_view text) override { lines.emplace_back(text); }

  std::vector<std::string> lines;
};

}  // namespace ostrel
