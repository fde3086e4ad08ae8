#pragma once

#include <atomic>
#include <string>

#include "Platform/Posix/PosixMainQueue.hpp"
#include "Platform/Posix/TerminationSignals.hpp"
#include "Platform/Shell.hpp"
#include "Platform/StandardStreams.hpp"
#include "Shells/Console/ConsoleAgentWindow.hpp"
#include "Shells/Console/ConsoleAlerts.hpp"
#include "Shells/Console/ConsoleOnboardingWindow.hpp"
#include "Shells/Console/ConsoleScreens.hpp"
#include "Shells/Console/ConsoleStatusItem.hpp"

namespace ostrel {

/// Whether commands are read from standard input.
enum class ConsoleInput { commands, ignored };

/// The shell where there is no display: serves the main queue and the commands on standard input. The end of
/// standard input ends only the commands; SIGINT, SIGTERM and SIGHUP end the loop with status 128 + signal.
class ConsoleShell final : public Shell {
 public:
  ConsoleShell(ConsoleInput input, const TerminationSignals& signals, PosixMainQueue& queue,
               StandardStreams& streams, ConsoleStatusItem& statusItem, ConsoleScreens& screens,
               ConsoleAgentWindow& agentWindow, ConsoleOnboardingWindow& onboarding, ConsoleAlerts& alerts)
      : inputKind_(input),
        signals_(signals),
        queue_(queue),
        streams_(streams),
        statusItem_(statusItem),
        screens_(screens),
        agentWindow_(agentWindow),
        onboarding_(onboarding),
        alerts_(alerts) {}

  void setActivationPolicy(ActivationPolicy) override {}
  void setMainMenu(const std::vector<Menu>& /*menus*/) override {}
  int run() override;
  void terminate(int status) override;
  void activate() override {}

 private:
  bool readInput();
  void perform(std::string_view line);
  void showPanel();
  void closeFront();
  void enterToken(std::string token);
  void press(std::size_t number);
  ConsolePress pressFront(std::size_t number);
  std::string front() const;
  void tellCommands();

  const ConsoleInput inputKind_;
  const TerminationSignals& signals_;
  PosixMainQueue& queue_;
  StandardStreams& streams_;
  ConsoleStatusItem& statusItem_;
  ConsoleScreens& screens_;
  ConsoleAgentWindow& agentWindow_;
  ConsoleOnboardingWindow& onboarding_;
  ConsoleAlerts& alerts_;
  std::string input_;  ///< the part of the current line that has been read
  std::atomic<bool> isTerminated_ = false;
  std::atomic<int> status_ = 0;
};

}  // namespace ostrel
