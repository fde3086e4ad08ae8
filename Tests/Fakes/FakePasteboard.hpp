#pragma once

#include <optional>
#include <string>

#include "Platform/Pasteboard.hpp"

namespace ostrel {

/// A pasteboard that the test reads.
class FakePasteboard final : public Pasteboard {
 public:
  void setText(std::string_view text) override { content = text; }

  std::optional<std::string> content;
};

}  // namespace ostrel
