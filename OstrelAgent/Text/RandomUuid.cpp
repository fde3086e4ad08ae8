#include "OstrelAgent/Text/RandomUuid.hpp"

#include <cstddef>
#include <random>
#include <string_view>

namespace ostrel {

std::string randomUuid() {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string uuid = "xxxxxxxx-xxxx-4xxx-Nxxx-xxxxxxxxxxxx";
  std::random_device random;
  std::uniform_int_distribution<std::size_t> anyDigit(0, 15);
  for (char& place : uuid) {
    if (place == 'x') place = digits[anyDigit(random)];
    if (place == 'N') place = digits[8 + anyDigit(random) % 4];
  }
  return uuid;
}

}  // namespace ostrel
