#include "Platform/Linux/DefaultRoutes.hpp"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

namespace ostrel {

namespace {

// Flags of <linux/route.h>.
constexpr std::uint32_t isUp = 0x1;
constexpr std::uint32_t isRejecting = 0x200;

/// The columns of a routing table that identify a default route.
struct Layout {
  std::size_t destination;
  std::size_t mask;
  std::size_t flags;
  std::size_t interface;
};

constexpr Layout ipv4{.destination = 1, .mask = 7, .flags = 3, .interface = 0};
constexpr Layout ipv6{.destination = 0, .mask = 1, .flags = 8, .interface = 9};

std::string_view takeUntil(std::string_view& rest, std::string_view ends) {
  const auto end = std::min(rest.find_first_of(ends), rest.size());
  const auto piece = rest.substr(0, end);
  rest.remove_prefix(std::min(end + 1, rest.size()));
  return piece;
}

std::vector<std::string_view> fieldsOf(std::string_view line) {
  std::vector<std::string_view> fields;
  while (!line.empty()) {
    if (const auto field = takeUntil(line, " \t"); !field.empty()) fields.push_back(field);
  }
  return fields;
}

bool isZero(std::string_view digits) { return digits.find_first_not_of('0') == std::string_view::npos; }

bool leadsOut(std::string_view flags) {
  std::uint32_t bits = 0;
  const auto [end, error] = std::from_chars(flags.data(), flags.data() + flags.size(), bits, 16);
  return error == std::errc() && (bits & isUp) != 0 && (bits & isRejecting) == 0;
}

void addInterfaces(std::set<std::string, std::less<>>& interfaces, std::string_view table, const Layout& at) {
  while (!table.empty()) {
    const auto fields = fieldsOf(takeUntil(table, "\n"));
    if (fields.size() <= std::max({at.mask, at.flags, at.interface})) continue;
    const bool isDefault = isZero(fields[at.destination]) && isZero(fields[at.mask]);
    if (isDefault && leadsOut(fields[at.flags])) interfaces.emplace(fields[at.interface]);
  }
}

}  // namespace

NetworkPathUpdate pathOfRoutes(std::string_view routes, std::string_view ipv6Routes) {
  std::set<std::string, std::less<>> interfaces;
  addInterfaces(interfaces, routes, ipv4);
  addInterfaces(interfaces, ipv6Routes, ipv6);
  return {.satisfied = !interfaces.empty(), .interfaces = {interfaces.begin(), interfaces.end()}};
}

}  // namespace ostrel
