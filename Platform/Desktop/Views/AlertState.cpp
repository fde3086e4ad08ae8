#include "Platform/Desktop/Views/AlertState.hpp"

#include "Platform/Desktop/Views/PanelValues.hpp"

namespace ostrel {

void AlertState::show(const Alert& alert) {
  title_ = textOf(alert.title);
  text_ = textOf(alert.text);
  buttons_.clear();
  for (const auto& button : alert.buttons) buttons_.append(textOf(button));
  // The text may be somebody else's, in another language.
  isRightToLeft_ = title_.isRightToLeft();
  emit shown();
}

}  // namespace ostrel
