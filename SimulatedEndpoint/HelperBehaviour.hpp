#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "SimulatedEndpoint/Json.hpp"

namespace ostrel::simulated {

enum class Sending { sent, retry, error };

/// How the stand-in helper behaves besides its answers; the default is a helper without faults.
struct HelperBehaviour {
  int exitStatus = 0;
  int signal = 0;
  bool printsGarbage = false;
  bool hangs = false;
  bool isUnreapable = false;  ///< of one that hangs: once killed it stays as long as its parent lives
  bool ignoresTermination = false;
  std::string omittedKey;
  std::size_t padBytes = 0;
  std::optional<std::size_t> truncateBytes;
  std::chrono::milliseconds delay{0};
  std::optional<std::chrono::milliseconds> livesAfterClosingOutput;
  Sending sending = Sending::sent;

  bool operator==(const HelperBehaviour&) const = default;
};

/// What is wrong with the "helper" of a scenario, or nothing.
std::optional<std::string> helperFault(const Json& helper);

/// The behaviour for one command ("status", "diagnostics", "uninstall"), from a "helper" without fault.
HelperBehaviour helperBehaviour(const Json& helper, std::string_view command);

/// The report as the helper prints it: a key left out, padded to a size.
std::string printedReport(Json report, const HelperBehaviour& behaviour);

/// What leaves the helper instead of its text: garbage, or only its beginning.
std::string distorted(std::string text, const HelperBehaviour& behaviour);

}  // namespace ostrel::simulated
