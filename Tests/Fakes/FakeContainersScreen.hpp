#pragma once

#include <utility>
#include <vector>

#include "OstrelAgent/Containers/ContainersPage.hpp"
#include "Platform/ContainersScreen.hpp"

namespace ostrel {

/// A containers page that keeps what it is to show.
class FakeContainersScreen final : public ContainersScreen {
 public:
  void onEvents(ContainersScreenEvents events) override { user = std::move(events); }
  void show(const ContainersPageContent& content) override { shown.push_back(content); }

  ContainersScreenEvents user;
  std::vector<ContainersPageContent> shown;
};

}  // namespace ostrel
