#pragma once

#include <expected>
#include <optional>
#include <string>

#include "Platform/Files.hpp"
#include "Platform/SimulatedMac/HostRoot.hpp"
#include "Platform/SimulatedMac/SystemExtensionFile.hpp"

namespace ostrel::simulated {

/// The user in System Settings, and an installer that brings another version of the application.
class ExtensionSettings {
 public:
  /// The files take real paths.
  ExtensionSettings(Files& files, const HostRoot& root);

  /// What waits for approval.
  std::optional<SystemExtensionAction> awaited() const { return read().awaiting; }

  /// Approves what waits for approval; gives what that was, or a sentence when nothing waits.
  [[nodiscard]] std::expected<SystemExtensionAction, std::string> approve() const;

  /// Declines it.
  [[nodiscard]] std::expected<SystemExtensionAction, std::string> deny() const;

  /// The bundle holds this version of the extension from now on.
  [[nodiscard]] std::expected<void, std::string> bundle(const std::string& version) const;

 private:
  enum class Answer { approve, deny };
  [[nodiscard]] std::expected<SystemExtensionAction, std::string> answer(Answer answer) const;
  SystemExtensionState read() const;
  [[nodiscard]] std::expected<void, std::string> write(const SystemExtensionState& state) const;

  Files& files_;
  const std::string path_;
  const std::string lockPath_;
};

}  // namespace ostrel::simulated
