#pragma once

#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "OstrelAgent/Verdict.hpp"
#include "Platform/StatusItem.hpp"

namespace ostrel {

/// A menu-bar item that remembers every icon it was given.
class FakeStatusItem final : public StatusItem {
 public:
  void install(std::function<void()> clicked) override { clicked_ = std::move(clicked); }

  void show(const MenuBarIcon& icon) override {
    if (!clicked_) ADD_FAILURE() << "an icon is shown before the item is installed";
    shown.push_back(icon);
  }

  /// Throws when nothing is installed.
  void click() const { clicked_(); }

  std::vector<MenuBarIcon> shown;

 private:
  std::function<void()> clicked_;
};

}  // namespace ostrel
