#pragma once

#include <chrono>
#include <cstdint>
#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "OstrelAgent/Daemon/HelperRunner.hpp"
#include "OstrelAgent/Extension/CaptureConfig.hpp"
#include "OstrelAgent/Extension/MenuBarAgent.hpp"
#include "OstrelAgent/Extension/NetworkConfigurations.hpp"
#include "Platform/BackgroundQueue.hpp"
#include "Platform/MainQueue.hpp"
#include "Platform/Shell.hpp"
#include "Platform/SystemExtensions.hpp"

namespace ostrel {

/// Runs an extension command: one request to the system, then the network configurations and the menu-bar
/// agent. Main thread; ends the process through the shell with status 0 or 1.
class Controller final : public SystemExtensionDelegate, public std::enable_shared_from_this<Controller> {
 public:
  enum class Action { activate, deactivate, reactivate };

  struct Command {
    Action action = Action::activate;
    bool extensionOnly = false;  ///< a deactivation leaves the daemon alone
  };

  static constexpr int maxAttempts = 12;
  static constexpr std::chrono::milliseconds delayBetweenAttempts{1500};

  struct Services {
    MainQueue& mainQueue;
    BackgroundQueue& backgroundQueue;
    SystemExtensions& systemExtensions;
    const Files& files;
    const Bundle& bundle;
    StandardStreams& streams;
    Shell& shell;
  };

  Controller(Command command, Services services, HelperRunner helper, NetworkConfigurations configurations,
             MenuBarAgent menuBarAgent);

  /// The action of a command word, or nullopt.
  static std::optional<Action> actionOf(std::string_view word);

  /// True for errors that the system returns while it is still registering an extension that was just
  /// approved.
  static bool isTransientNEConfigRace(const PlatformError& error);

  /// Starts the command. Call once.
  void run();

  SystemExtensionReplacement replacementOfInstalled() override;
  void needsUserApproval() override;
  void finished(SystemExtensionResult result) override;
  void failed(const PlatformError& error) override;

 private:
  enum class State { idle, submitted, awaitingApproval, configuring, ended };

  bool isRequestOpen() const;
  void submit();
  void configureProxy(int attempt);
  void retryOrFail(int attempt, const NetworkConfigurations::ProxyFailure& failure);
  void configureEgressLockFilter();
  void finishProxyConfigured();
  void removeProxyThenUninstall();
  void removeAgentThenUninstall();
  void uninstall();
  void finishUninstall(std::int32_t status);
  void inBackground(std::function<std::int32_t()> work, std::function<void(Controller&, std::int32_t)> next);
  void print(std::string_view line);
  void finish(std::string_view line);
  void fail(std::string_view line);
  void end(int status);

  const Command command_;
  Services services_;
  HelperRunner helper_;
  NetworkConfigurations configurations_;
  MenuBarAgent menuBarAgent_;
  CaptureConfig captureConfig_;
  State state_ = State::idle;
  ScheduledWork retry_;
};

}  // namespace ostrel
