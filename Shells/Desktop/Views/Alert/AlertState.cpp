#include "Shells/Desktop/Views/Alert/AlertState.hpp"

#include "Shells/Desktop/Views/Panel/PanelValues.hpp"

namespace ostrel {

void AlertState::show(const Alert& alert) {
  title_ = textOf(alert.title);
  text_ = textOf(alert.text);
  buttons_.clear();
  for (const auto& button : alert.buttons) buttons_.append(textOf(button));
  // The text may come from the daemon, in another language than the program's.
  isRightToLeft_ = title_.isRightToLeft();
  emit shown();
}

}  // namespace ostrel
