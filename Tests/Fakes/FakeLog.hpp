#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "Platform/Log.hpp"

namespace ostrel {

/// The lines that were logged.
class FakeLog final : public Log {
 public:
  void line(std::string_view text) override {
    const std::lock_guard lock(mutex_);
    lines_.emplace_back(text);
  }

  std::vector<std::string> lines() const {
    const std::lock_guard lock(mutex_);
    return lines_;
  }

 private:
  mutable std::mutex mutex_;
  std::vector<std::string> lines_;
};

}  // namespace ostrel
