#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "Platform/Date.hpp"

namespace ostrel {

/// Decides which container runtimes with a blocked download to notify about: those that the user chose, each
/// once a day.
struct ContainerBlockNotificationGate {
  struct Outcome {
    std::vector<std::string> post;             ///< runtimes to notify about now, in the order of `blocked`
    std::map<std::string, Date> lastPostedAt;  ///< of each runtime

    bool operator==(const Outcome&) const = default;
  };

  static Outcome evaluate(const std::vector<std::string>& blocked, const std::set<std::string>& enabled,
                          std::map<std::string, Date> lastPostedAt, Date now);
};

}  // namespace ostrel
