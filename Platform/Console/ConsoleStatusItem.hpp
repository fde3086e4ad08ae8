#pragma once

#include <functional>

#include "Platform/StandardStreams.hpp"
#include "Platform/StatusItem.hpp"

namespace ostrel {

/// The status item as lines of standard output: its text, whenever it changes.
class ConsoleStatusItem final : public StatusItem {
 public:
  explicit ConsoleStatusItem(StandardStreams& streams) : streams_(streams) {}

  void install(std::function<void()> clicked) override { clicked_ = std::move(clicked); }
  void show(const MenuBarIcon& icon) override;

  void click() const;

 private:
  StandardStreams& streams_;
  std::function<void()> clicked_;
};

}  // namespace ostrel
