#include "Platform/Console/ConsoleAlerts.hpp"

#include <string>
#include <utility>

#include "Platform/Console/PrintableText.hpp"
#include "Platform/Console/TextLines.hpp"

namespace ostrel {

void ConsoleAlerts::show(const Alert& alert, std::function<void(std::size_t)> completion) {
  waiting_.push_back({alert, std::move(completion)});
  if (waiting_.size() == 1) print();
}

ConsolePress ConsoleAlerts::press(std::size_t number) {
  if (!isShown()) return ConsolePress::nothingOpen;
  if (number < 1 || number > waiting_.front().alert.buttons.size()) return ConsolePress::noSuchButton;
  const auto completion = std::move(waiting_.front().completion);
  waiting_.pop_front();
  if (isShown()) print();
  completion(number - 1);
  return ConsolePress::done;
}

void ConsoleAlerts::print() const {
  const auto& alert = waiting_.front().alert;
  std::vector<std::string> buttons;
  for (const auto& button : alert.buttons) {
    buttons.push_back("[" + std::to_string(buttons.size() + 1) + "] " + printableText(button));
  }
  TextLines lines;
  lines.blank();
  lines.hanging("! ", alert.title);
  lines.paragraph(2, alert.text);
  lines.flow("  ", buttons, "   ");
  streams_.writeOutput(lines.take());
}

}  // namespace ostrel
