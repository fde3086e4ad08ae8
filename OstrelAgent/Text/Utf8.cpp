#include "OstrelAgent/Text/Utf8.hpp"

#include <cstddef>

namespace ostrel {

namespace {

/// Length of the character at the front of the bytes, or 0 when it is not well-formed.
std::size_t characterLength(std::string_view bytes) {
  const auto byte = [&](std::size_t i) {
    return i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0U;
  };
  const auto tail = [&](std::size_t i) { return byte(i) >= 0x80 && byte(i) <= 0xBF; };
  const unsigned lead = byte(0);
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead <= 0xDF) return tail(1) ? 2 : 0;
  if (lead >= 0xE0 && lead <= 0xEF) {
    const bool ranged = (lead != 0xE0 || byte(1) >= 0xA0) && (lead != 0xED || byte(1) <= 0x9F);
    return ranged && tail(1) && tail(2) ? 3 : 0;
  }
  if (lead >= 0xF0 && lead <= 0xF4) {
    const bool ranged = (lead != 0xF0 || byte(1) >= 0x90) && (lead != 0xF4 || byte(1) <= 0x8F);
    return ranged && tail(1) && tail(2) && tail(3) ? 4 : 0;
  }
  return 0;
}

}  // namespace

bool isUtf8(std::string_view bytes) {
  while (!bytes.empty()) {
    const auto length = characterLength(bytes);
    if (length == 0) return false;
    bytes.remove_prefix(length);
  }
  return true;
}

void appendUtf8(std::string& text, char32_t point) {
  const auto append = [&](char32_t byte) { text += static_cast<char>(static_cast<unsigned char>(byte)); };
  if (point < 0x80) return append(point);
  if (point < 0x800) {
    append(0xC0 | (point >> 6));
  } else if (point < 0x10000) {
    append(0xE0 | (point >> 12));
    append(0x80 | ((point >> 6) & 0x3F));
  } else {
    append(0xF0 | (point >> 18));
    append(0x80 | ((point >> 12) & 0x3F));
    append(0x80 | ((point >> 6) & 0x3F));
  }
  append(0x80 | (point & 0x3F));
}

}  // namespace ostrel
