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

/// How the approval of the extension goes on.
using ActivationState = std::variant<activationstate::Idle, activationstate::Running,
                                     activationstate::AwaitingApproval, activationstate::Failed>;

/// The state that a piece of the activation's progress puts in its place, or nothing when it says nothing.
std::optional<ActivationState> activationOfProgress(std::string_view chunk);

/// The state after the activation has ended with that status and standard error.
ActivationState activationAfterExit(int status, std::string_view standardError);

}  // namespace ostrel
