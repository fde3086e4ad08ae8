#pragma once

#include <string>

#include "Platform/StandardStreams.hpp"

namespace ostrel {

/// All that was written to either stream.
class FakeStandardStreams final : public StandardStreams {
 public:
  void writeOutput(std::string_view text) override { output += text; }
  void writeError(std::string_view text) override { error += text; }

  std::string output;
  std::string error;
};

}  // namespace ostrel
