#include "Shells/Console/ConsoleScreens.hpp"

#include "Shells/Console/PanelText.hpp"

namespace ostrel {

void ConsoleScreens::openPanel(const PanelContent& content) {
  shown_ = content;
  reprint();
}

void ConsoleScreens::updatePanel(const PanelContent& content) {
  if (shown_ == content) return;
  openPanel(content);
}

ConsolePress ConsoleScreens::press(std::size_t number) const {
  if (!shown_) return ConsolePress::nothingOpen;
  const auto buttons = shown_->buttons();
  if (number < 1 || number > buttons.size()) return ConsolePress::noSuchButton;
  const auto& button = buttons[number - 1];
  if (!button.isEnabled) return ConsolePress::disabled;
  if (pressed_) pressed_(button);
  return ConsolePress::done;
}

void ConsoleScreens::reprint() const {
  if (!shown_) return;
  std::string text = "\n";
  text += panelText(*shown_, ButtonMarks::numbered);
  text += '\n';
  streams_.writeOutput(text);
}

}  // namespace ostrel
