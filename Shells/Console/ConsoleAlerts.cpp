#include "Shells/Console/ConsoleAlerts.hpp"

#include <utility>

#include "Shells/Console/AlertText.hpp"

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

void ConsoleAlerts::print() const { streams_.writeOutput("\n" + alertText(waiting_.front().alert)); }

}  // namespace ostrel
