#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "OstrelAgent/Window/AgentWindowContent.hpp"
#include "Platform/AgentWindow.hpp"
#include "Platform/StandardStreams.hpp"
#include "Shells/Console/ConsolePress.hpp"
#include "Shells/Console/ConsoleStatusItem.hpp"
#include "Shells/Console/WindowButtons.hpp"

namespace ostrel {

/// The agent window as text on standard output, printed when it opens and whenever its text changes. Of the
/// containers page the list or a runtime's detail can be printed alone; the list's first print has the rest
/// of the page below.
class ConsoleAgentWindow final : public AgentWindow {
 public:
  ConsoleAgentWindow(StandardStreams& streams, ConsoleStatusItem& statusItem)
      : streams_(streams), statusItem_(statusItem) {}

  void onEvents(AgentWindowEvents events) override { events_ = std::move(events); }
  void open(const AgentWindowContent& content, const WindowSize& size) override;
  void update(const AgentWindowContent& content) override;
  void close() override;

  /// False when no role has the window.
  bool isAvailable() const { return events_.closed != nullptr; }
  bool isOpen() const { return shown_.has_value(); }

  /// Opens the page of that name in any case, or the one shown last when the name is empty.
  void openPage(std::string_view name);

  /// Opens the list of the containers page, or the detail of the runtime of that name when it is not empty.
  void openContainers(std::string_view runtime);

  /// Presses the button with that number, from 1, of the printed window.
  ConsolePress press(std::size_t number);

  /// Copies what a word of `consolecommand::Copy` names.
  void copy(std::string_view word);

  /// Switches the notifications about a runtime, or about "all".
  void switchNotification(std::string_view runtime, bool isOn);

 private:
  enum class Form { window, containersList, containerDetail };

  /// While it lives, a changed page is not printed: the command prints what it did.
  class Quiet {
   public:
    explicit Quiet(bool& flag) : flag_(flag) { flag_ = true; }
    Quiet(const Quiet&) = delete;
    Quiet& operator=(const Quiet&) = delete;
    ~Quiet() { flag_ = false; }

   private:
    bool& flag_;
  };

  void open(Form form, const PanelButton& button);
  std::string text();
  void print();
  void perform(const WindowButton& button);
  void switchAllNotifications(bool isOn);
  void tellSwitch(bool isStored, const std::string& label, bool isOn, const char* failure);
  std::optional<std::string> runtimeNamed(std::string_view name);

  StandardStreams& streams_;
  ConsoleStatusItem& statusItem_;
  AgentWindowEvents events_;
  Form wanted_ = Form::window;  ///< of the next opening
  Form form_ = Form::window;
  bool isQuiet_ = false;
  bool isInsideDue_ = false;  ///< the next list is followed by what is done inside containers
  std::string printed_;       ///< the last text, empty when the next one must be printed
  std::vector<WindowButton> buttons_;
  std::optional<AgentWindowContent> shown_;
  std::string selected_;  ///< the runtime whose detail was shown last; empty for none
};

}  // namespace ostrel
