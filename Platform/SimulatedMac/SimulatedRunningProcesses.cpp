#include "Platform/SimulatedMac/SimulatedRunningProcesses.hpp"

#include <algorithm>
#include <cstddef>

namespace ostrel {

namespace {

constexpr std::size_t maxNameBytes = 16;  // MAXCOMLEN in <sys/param.h> of macOS

}  // namespace

std::vector<std::string> SimulatedRunningProcesses::names() const {
  auto names = applications_.current()->processes;
  for (auto& name : names) name.resize(std::min(name.size(), maxNameBytes));
  return names;
}

}  // namespace ostrel
