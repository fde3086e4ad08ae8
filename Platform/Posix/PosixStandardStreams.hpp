#pragma once

#include "Platform/StandardStreams.hpp"

namespace ostrel {

/// The descriptors 1 and 2. Make it before anything else opens a descriptor.
class PosixStandardStreams final : public StandardStreams {
 public:
  /// Opens /dev/null for every closed standard descriptor, so that no file of the program takes its number,
  /// and ignores SIGPIPE, so that a reader that goes away ends nothing.
  PosixStandardStreams();

  void writeOutput(std::string_view text) override;
  void writeError(std::string_view text) override;
};

}  // namespace ostrel
