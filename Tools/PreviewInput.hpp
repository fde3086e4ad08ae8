#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace ostrel {

/// One document of the input.
struct PreviewDocument {
  std::string_view bytes;
  std::size_t linesBefore = 0;  ///< lines of the input above it
  bool isLine = false;          ///< it takes one line, and so does its answer
};

/// The documents of the input: its lines when the first that is not blank is an object by itself, else the
/// whole. Blank lines are none.
std::vector<PreviewDocument> previewDocuments(std::string_view input);

}  // namespace ostrel
