#pragma once

#include <cstddef>
#include <cstdint>
#include <random>

namespace ostrel {

/// Chances that are the same for the same seed, on every system.
class Random {
 public:
  explicit Random(std::uint64_t seed) : random_(seed) {}

  std::size_t below(std::size_t end) { return static_cast<std::size_t>(random_() % end); }
  bool oneIn(std::size_t count) { return below(count) == 0; }

  template <class List>
  const auto& pick(const List& list) {
    return list[below(std::size(list))];
  }

 private:
  std::mt19937_64 random_;
};

}  // namespace ostrel
