#include "Shells/Console/PrintableText.hpp"

namespace ostrel {

namespace {

unsigned char byteAt(std::string_view text, std::size_t at) {
  return at < text.size() ? static_cast<unsigned char>(text[at]) : 0;
}

/// Length of the control character at the place, or 0. U+0080 to U+009F take two bytes.
std::size_t controlLength(std::string_view text, std::size_t at) {
  const auto lead = byteAt(text, at);
  if (lead < 0x20 || lead == 0x7F) return 1;
  const auto tail = byteAt(text, at + 1);
  return lead == 0xC2 && tail >= 0x80 && tail <= 0x9F ? 2 : 0;
}

}  // namespace

std::string printableText(std::string_view text) {
  std::string printable;
  printable.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const auto control = controlLength(text, at);
    printable += control > 0 ? ' ' : text[at];
    at += control > 0 ? control : 1;
  }
  return printable;
}

}  // namespace ostrel
