#pragma once

#include <chrono>
#include <expected>
#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "SimulatedEndpoint/Json.hpp"

namespace ostrel::simulated {

/// How a request is met.
struct Reply {
  std::string bytes;  ///< then the connection is closed
  std::chrono::milliseconds delay{0};
  bool isSilent = false;  ///< no answer until the peer closes

  bool operator==(const Reply&) const = default;
};

/// The order of a command line ("slow 500", "refuse locked"), null for "none", or a sentence on what is wrong
/// with it.
[[nodiscard]] std::expected<Json, std::string> misbehaviourOrder(std::span<const std::string> words);

/// Whether the order has the daemon close a connection before it reads from it.
bool closesEarly(const Json& order);

/// The reply under an order; the answer in good order is asked for only where it is needed.
Reply misbehavingReply(const Json& order, const std::function<Json()>& answer);

}  // namespace ostrel::simulated
