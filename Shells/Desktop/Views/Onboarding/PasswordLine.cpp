#include "Shells/Desktop/Views/Onboarding/PasswordLine.hpp"

#include <utility>

namespace ostrel {

namespace {

constexpr std::size_t maxSteps = 100;

}  // namespace

void PasswordLine::insert(const QString& text) {
  if (text.isEmpty()) return;
  const bool isLetter = text.size() == 1;
  if (!isLetter || !isTyping_ || hasSelection()) remember();
  removeSelection();
  now_.text.insert(now_.caret, text);
  anchor_ = now_.caret += text.size();
  isTyping_ = isLetter;
}

void PasswordLine::eraseTo(qsizetype place) {
  if (!hasSelection()) anchor_ = std::clamp<qsizetype>(place, 0, now_.text.size());
  if (!hasSelection()) return;
  remember();
  removeSelection();
}

void PasswordLine::moveTo(qsizetype place, Select select) {
  now_.caret = std::clamp<qsizetype>(place, 0, now_.text.size());
  if (select == Select::no) anchor_ = now_.caret;
  isTyping_ = false;
}

void PasswordLine::selectAll() {
  moveTo(0, Select::no);
  moveTo(now_.text.size(), Select::yes);
}

qsizetype PasswordLine::before(qsizetype place) const {
  const bool isPair = place > 1 && now_.text[place - 1].isLowSurrogate();
  return std::max<qsizetype>(0, place - (isPair ? 2 : 1));
}

qsizetype PasswordLine::after(qsizetype place) const {
  const bool isPair = place < now_.text.size() && now_.text[place].isHighSurrogate();
  return std::min(now_.text.size(), place + (isPair ? 2 : 1));
}

void PasswordLine::remember() {
  future_.clear();
  past_.push_back(now_);
  if (past_.size() > maxSteps) past_.erase(past_.begin());
  isTyping_ = false;
}

void PasswordLine::removeSelection() {
  const auto start = selectionStart();
  now_.text.remove(start, selectionEnd() - start);
  anchor_ = now_.caret = start;
}

void PasswordLine::step(std::vector<State>& from, std::vector<State>& to) {
  if (from.empty()) return;
  to.push_back(std::exchange(now_, std::move(from.back())));
  from.pop_back();
  anchor_ = now_.caret;
  isTyping_ = false;
}

}  // namespace ostrel
