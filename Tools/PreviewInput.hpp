#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace ostrel {

/// One document of the input.
struct PreviewDocument {
  std::string_view bytes;
  std::size_t linesBefore = 0;  ///< lines of the input above it
  bool isLine = false;          ///< one line, answered by one line
};

/// The documents of the input: its non-blank lines when the first of them is a complete object, else the
/// whole input.
std::vector<PreviewDocument> previewDocuments(std::string_view input);

}  // namespace ostrel
