#pragma once

#include <string_view>

namespace ostrel {

/// The process's own standard output and error. Any thread; a stream that cannot be written loses the text.
class StandardStreams {
 public:
  virtual ~StandardStreams() = default;

  /// Writes the text as it stands, at once.
  virtual void writeOutput(std::string_view text) = 0;
  virtual void writeError(std::string_view text) = 0;
};

}  // namespace ostrel
