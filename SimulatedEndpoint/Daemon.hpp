#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <string_view>

#include "Platform/Files.hpp"
#include "SimulatedEndpoint/Json.hpp"
#include "SimulatedEndpoint/SimulatedState.hpp"

namespace ostrel::simulated {

/// The daemon's side of the control socket: what it answers, and what that changes in the next report.
class Daemon {
 public:
  /// The files take real paths; the time is asked for at every request.
  Daemon(Files& files, const SimulatedState& state, std::function<std::chrono::sys_seconds()> now);

  /// The answer to one request without its line feed. The token of an enrolment is kept nowhere.
  Json answer(std::string_view request);

 private:
  Json answerTo(const Json& request);
  Json status();
  Json certificateTrust();
  Json checkIn();
  Json update();
  Json enrol(const Json& request);

  /// The report as the helper prints it now; empty where the scenario is damaged.
  Json report() const;
  /// The change made, or the daemon's refusal.
  Json changed(const std::function<Json(Json)>& change, Json answer);

  Files& files_;
  const SimulatedState& state_;
  std::function<std::chrono::sys_seconds()> now_;
};

/// Brings the endpoint and the application with its extension to another version.
[[nodiscard]] std::expected<void, std::string> upgrade(Files& files, const SimulatedState& state,
                                                       const std::string& version);

}  // namespace ostrel::simulated
