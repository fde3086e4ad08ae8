#pragma once

#include <string_view>

namespace ostrel {

/// The process's standard output and error. Any thread; text that cannot be written is lost.
class StandardStreams {
 public:
  virtual ~StandardStreams() = default;

  /// Writes the text unchanged and unbuffered.
  virtual void writeOutput(std::string_view text) = 0;
  virtual void writeError(std::string_view text) = 0;
};

}  // namespace ostrel
