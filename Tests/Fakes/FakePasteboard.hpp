#pragma once

#include <optional>
#include <string>

#include "Platform/Pasteboard.hpp"

namespace ostrel {

/// A pasteboard that the test reads.
class FakePasteboard final : public Pasteboard {
 public:
  [[nodiscard]] bool setText(std::string_view text) override {
    if (refuses) return false;
    content = text;
    return true;
  }

  std::optional<std::string> content;
  bool refuses = false;
};

}  // namespace ostrel
