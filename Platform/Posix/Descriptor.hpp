#pragma once

#include <expected>
#include <string_view>
#include <utility>

#include "Platform/PlatformError.hpp"

namespace ostrel {

/// Owns one file descriptor; -1 is none.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept;
  ~Descriptor() { (void)close(); }

  int number() const { return number_; }
  explicit operator bool() const { return number_ >= 0; }

  /// Closes now; returns the errno, or 0 on success or when nothing was open.
  [[nodiscard]] int close();

 private:
  int number_ = -1;
};

/// The two ends of a pipe, closed on exec.
struct Pipe {
  Descriptor reading;
  Descriptor writing;
};

/// Creates a pipe whose ends never get the numbers of the standard streams, even when those are closed.
[[nodiscard]] std::expected<Pipe, PlatformError> makePipe();

/// Writes the whole text, waiting when the descriptor is non-blocking; returns the errno, or 0.
[[nodiscard]] int writeAll(int descriptor, std::string_view text);

}  // namespace ostrel
