#pragma once

#include <gtest/gtest.h>

#include <utility>
#include <variant>
#include <vector>

#include "OstrelAgent/Window/AgentWindowContent.hpp"
#include "Platform/AgentWindow.hpp"

namespace ostrel {

/// A window that keeps what it is to show.
class FakeAgentWindow final : public AgentWindow {
 public:
  void onEvents(AgentWindowEvents events) override { user = std::move(events); }

  void open(const AgentWindowContent& content, const WindowSize& size) override {
    contents.push_back(content);
    sizes.push_back(size);
    isOpen = true;
    if (!canOpen) close();
  }

  void update(const AgentWindowContent& content) override {
    if (!isOpen) ADD_FAILURE() << "a window is updated that is not open";
    contents.push_back(content);
  }

  void close() override {
    if (std::exchange(isOpen, false)) user.closed();
  }

  /// Throws when nothing was shown.
  const AgentWindowContent& shown() const { return contents.at(contents.size() - 1); }

  /// The shown page; throws when another one is shown.
  template <class Body>
  const Body& body() const {
    return std::get<Body>(shown().body);
  }
  const ContainersPageContent& containers() const { return body<ContainersPageContent>(); }

  AgentWindowEvents user;
  std::vector<AgentWindowContent> contents;  ///< of opening and updating, in order
  std::vector<WindowSize> sizes;             ///< of opening
  bool canOpen = true;
  bool isOpen = false;
};

}  // namespace ostrel
