#include "Shells/Console/ConsoleShell.hpp"

#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <utility>

#include "OstrelAgent/Text/Overloaded.hpp"
#include "Shells/Console/ConsoleCommand.hpp"

namespace ostrel {

namespace {

// An enrolment token may be long.
constexpr std::size_t longestLine = std::size_t{1} << 20;

}  // namespace

int ConsoleShell::run() {
  std::array<pollfd, 3> watched = {{
      {queue_.descriptor(), POLLIN, 0},
      {signals_.descriptor(), POLLIN, 0},
      {inputKind_ == ConsoleInput::commands ? STDIN_FILENO : -1, POLLIN, 0},
  }};
  while (!isTerminated_) {
    if (::poll(watched.data(), watched.size(), -1) < 0) {
      if (errno == EINTR) continue;
      return 1;
    }
    if (watched[1].revents != 0) return 128 + TerminationSignals::received().value_or(0);
    if (watched[0].revents != 0) queue_.processDueWork();
    if (watched[2].revents != 0 && !readInput()) watched[2].fd = -1;
  }
  return status_;
}

void ConsoleShell::terminate(int status) {
  if (isTerminated_.exchange(true)) return;
  status_ = status;
  queue_.post([] {});
}

/// Performs the lines that have come; false at the end of input.
bool ConsoleShell::readInput() {
  std::array<char, 1024> bytes;
  const auto count = ::read(STDIN_FILENO, bytes.data(), bytes.size());
  if (count < 0) return errno == EINTR || errno == EAGAIN;
  if (count == 0) {
    perform(std::exchange(input_, {}));
    return false;
  }
  input_.append(bytes.data(), static_cast<std::size_t>(count));
  for (auto end = input_.find('\n'); end != std::string::npos && !isTerminated_; end = input_.find('\n')) {
    const auto line = input_.substr(0, end);
    input_.erase(0, end + 1);
    perform(line);
  }
  // Of a longer line the start is kept, so that its end is not taken for a command.
  if (input_.size() > longestLine) input_.resize(longestLine);
  return true;
}

void ConsoleShell::perform(std::string_view line) {
  auto command = parseConsoleCommand(line);
  // Only the menu-bar role has the agent window.
  const auto onWindow = [this](auto action) { agentWindow_.isAvailable() ? action() : tellCommands(); };
  std::visit(
      Overloaded{
          [&](consolecommand::ShowPanel) { showPanel(); },
          [&](consolecommand::ShowWindow& shown) { onWindow([&] { agentWindow_.openPage(shown.page); }); },
          [&](consolecommand::CloseFront) { closeFront(); },
          [&](consolecommand::Press pressed) { press(pressed.number); },
          [&](consolecommand::Token& token) { enterToken(std::move(token.text)); },
          [&](consolecommand::ShowContainers& shown) {
            onWindow([&] { agentWindow_.openContainers(shown.runtime); });
          },
          [&](consolecommand::Copy& copy) { onWindow([&] { agentWindow_.copy(copy.what); }); },
          [&](consolecommand::Notify& notify) {
            onWindow([&] { agentWindow_.switchNotification(notify.runtime, notify.isOn); });
          },
          [&](consolecommand::Quit) { onboarding_.isOpen() ? onboarding_.close() : terminate(0); },
          [](consolecommand::Nothing) {},
          [&](consolecommand::Unknown) { tellCommands(); },
      },
      command);
}

void ConsoleShell::showPanel() {
  if (onboarding_.isOpen()) return onboarding_.reprint();
  screens_.isPanelShown() ? screens_.reprint() : statusItem_.click();
}

void ConsoleShell::closeFront() {
  if (agentWindow_.isOpen()) return agentWindow_.close();
  if (screens_.isPanelShown()) statusItem_.click();
}

void ConsoleShell::enterToken(std::string token) {
  const auto press = onboarding_.enterToken(std::move(token));
  if (press == ConsolePress::nothingOpen) return tellCommands();
  if (press != ConsolePress::done) streams_.writeOutput("the window asks for no token\n");
}

void ConsoleShell::tellCommands() {
  streams_.writeOutput(onboarding_.isOpen()
                           ? "commands: token TEXT, press N, quit\n"
                           : "commands: panel, window [PAGE], press N, close, containers [NAME], copy WHAT, "
                             "notify NAME on|off, quit\n");
}

/// Presses a button of what is in front. A panel beside the agent window was opened after it, since the
/// window opens in its place.
ConsolePress ConsoleShell::pressFront(std::size_t number) {
  if (alerts_.isShown()) return alerts_.press(number);
  if (onboarding_.isOpen()) return onboarding_.press(number);
  if (screens_.isPanelShown()) return screens_.press(number);
  return agentWindow_.press(number);
}

std::string ConsoleShell::front() const {
  if (alerts_.isShown()) return "the alert";
  return onboarding_.isOpen() || !screens_.isPanelShown() ? "the window" : "the panel";
}

void ConsoleShell::press(std::size_t number) {
  const auto name = front();
  switch (pressFront(number)) {
    case ConsolePress::done:
      return;
    case ConsolePress::nothingOpen:
      return streams_.writeOutput("open the panel first: panel\n");
    case ConsolePress::noSuchButton:
      return streams_.writeOutput(name + " has no button " + std::to_string(number) + "\n");
    case ConsolePress::disabled:
      return streams_.writeOutput("this button cannot be pressed now\n");
  }
}

}  // namespace ostrel
