#pragma once

#include "Platform/StandardStreams.hpp"

namespace ostrel {

/// The descriptors 1 and 2. Create it before anything opens a descriptor.
class PosixStandardStreams final : public StandardStreams {
 public:
  /// Opens /dev/null for every closed standard descriptor, so that no other file gets its number, and ignores
  /// SIGPIPE, so that a closed pipe does not end the program.
  PosixStandardStreams();

  void writeOutput(std::string_view text) override;
  void writeError(std::string_view text) override;
};

}  // namespace ostrel
