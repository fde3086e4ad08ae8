#include "Shells/Console/AlertText.hpp"

#include <vector>

#include "Shells/Console/PrintableText.hpp"
#include "Shells/Console/TextLines.hpp"

namespace ostrel {

std::string alertText(const Alert& alert) {
  std::vector<std::string> buttons;
  for (const auto& button : alert.buttons) {
    buttons.push_back("[" + std::to_string(buttons.size() + 1) + "] " + printableText(button));
  }
  TextLines lines;
  lines.hanging("! ", alert.title);
  lines.paragraph(2, alert.text);
  lines.flow("  ", buttons, "   ");
  return lines.take();
}

}  // namespace ostrel
