#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace ostrel {

namespace activationstate {
struct Running {
  std::string line;
  bool operator==(const Running&) const = default;
};
struct AwaitingApproval {
  std::string line;
  bool operator==(const AwaitingApproval&) const = default;
};
struct Failed {
  std::string message;
  bool operator==(const Failed&) const = default;
};
struct Idle {
  bool operator==(const Idle&) const = default;
};
}  // namespace activationstate

/// Progress of the extension's activation and approval.
using ActivationState = std::variant<activationstate::Idle, activationstate::Running,
                                     activationstate::AwaitingApproval, activationstate::Failed>;

/// The new state after a piece of the activation's output, or nullopt when the output changes nothing.
std::optional<ActivationState> activationOfProgress(std::string_view chunk);

/// The state after the activation has exited with that status and standard error.
ActivationState activationAfterExit(int status, std::string_view standardError);

}  // namespace ostrel
