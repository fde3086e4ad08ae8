#pragma once

#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "OstrelAgent/Containers/ContainersPage.hpp"
#include "OstrelAgent/Panel/StatusPanelActions.hpp"
#include "Shells/Console/PanelText.hpp"

namespace ostrel {

/// A notification switch, with what a press makes of it.
struct NotifySwitch {
  std::string runtime;
  bool isOn = false;
};
struct AllNotifySwitch {
  bool isOn = false;
};

/// A button of the agent window's text.
struct WindowButton {
  std::variant<PanelButton, PageAction, ContainersCopy, NotifySwitch, AllNotifySwitch> does;
  bool isEnabled = true;
};

/// Writes the marks of buttons and keeps the buttons in the order of their numbers.
class WindowButtons {
 public:
  explicit WindowButtons(ButtonMarks marks) : isNumbered_(marks == ButtonMarks::numbered) {}

  std::string mark(const PanelButton& button) { return mark(button.title, {button, button.isEnabled}); }
  std::string mark(const PageButton& button) { return mark(button.title, {button.action}); }
  std::string mark(const ContainersPageContent::CopyButton& button) {
    return mark(button.title, {button.copies});
  }

  /// What stands before the label of a switch.
  std::string switchMark(bool isOn, WindowButton button) {
    const auto number = add(std::move(button));
    return (isNumbered_ ? "[" + number + "] " : std::string()) + (isOn ? "[x] " : "[ ] ");
  }

  std::vector<WindowButton> take() { return std::move(buttons_); }

 private:
  std::string mark(const std::string& title, WindowButton button) {
    const auto number = add(std::move(button));
    return isNumbered_ ? "[" + number + "] " + title : "[" + title + "]";
  }

  std::string add(WindowButton button) {
    buttons_.push_back(std::move(button));
    return std::to_string(buttons_.size());
  }

  const bool isNumbered_;
  std::vector<WindowButton> buttons_;
};

}  // namespace ostrel
