#pragma once

#include "Platform/Pasteboard.hpp"
#include "Platform/StandardStreams.hpp"

namespace ostrel {

/// The pasteboard where only the terminal can copy: prints what it is given, to be taken from there.
class ConsolePasteboard final : public Pasteboard {
 public:
  explicit ConsolePasteboard(StandardStreams& streams) : streams_(streams) {}

  [[nodiscard]] bool setText(std::string_view text) override;

 private:
  StandardStreams& streams_;
};

}  // namespace ostrel
