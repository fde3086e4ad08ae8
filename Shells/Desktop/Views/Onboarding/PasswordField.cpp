#include "Shells/Desktop/Views/Onboarding/PasswordField.hpp"

#include <QAccessible>
#include <QClipboard>
#include <QCursor>
#include <QGuiApplication>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <utility>

namespace ostrel {

namespace {

using Select = PasswordLine::Select;

constexpr qreal caretWidth = 1.5;

enum class Place { before, after, start, end };

struct MoveRow {
  QKeySequence::StandardKey key;
  Place place;
  Select select;
};

/// Moves by words go to the ends of the line: stops in between would show where words begin.
constexpr MoveRow moves[] = {
    {QKeySequence::MoveToPreviousChar, Place::before, Select::no},
    {QKeySequence::MoveToNextChar, Place::after, Select::no},
    {QKeySequence::MoveToPreviousWord, Place::start, Select::no},
    {QKeySequence::MoveToStartOfLine, Place::start, Select::no},
    {QKeySequence::MoveToNextWord, Place::end, Select::no},
    {QKeySequence::MoveToEndOfLine, Place::end, Select::no},
    {QKeySequence::SelectPreviousChar, Place::before, Select::yes},
    {QKeySequence::SelectNextChar, Place::after, Select::yes},
    {QKeySequence::SelectPreviousWord, Place::start, Select::yes},
    {QKeySequence::SelectStartOfLine, Place::start, Select::yes},
    {QKeySequence::SelectNextWord, Place::end, Select::yes},
    {QKeySequence::SelectEndOfLine, Place::end, Select::yes},
};

struct EraseRow {
  QKeySequence::StandardKey key;
  Place place;
};

constexpr EraseRow erasures[] = {
    {QKeySequence::Backspace, Place::before},        {QKeySequence::Delete, Place::after},
    {QKeySequence::DeleteStartOfWord, Place::start}, {QKeySequence::DeleteEndOfWord, Place::end},
    {QKeySequence::DeleteEndOfLine, Place::end},
};

qsizetype placeOf(Place place, const PasswordLine& line) {
  switch (place) {
    case Place::before:
      return line.before(line.caret());
    case Place::after:
      return line.after(line.caret());
    case Place::start:
      return 0;
    case Place::end:
      return line.text().size();
  }
  return 0;
}

bool isTyped(const QKeyEvent& event) {
  const auto text = event.text();
  const bool isCommand =
      event.modifiers().testFlag(Qt::ControlModifier) !=
      event.modifiers().testFlag(Qt::AltModifier);  // both together are AltGr, which types a character
  return !text.isEmpty() && !isCommand && (text[0].isPrint() || text[0].isSurrogate());
}

}  // namespace

PasswordField::PasswordField(QQuickItem* parent) : QQuickPaintedItem(parent) {
  setAntialiasing(true);
  setAcceptedMouseButtons(Qt::LeftButton | Qt::MiddleButton);
  setCursor(Qt::IBeamCursor);
  setFlag(ItemAcceptsInputMethod);
  connect(this, &PasswordField::styleChanged, this, [this] { update(); });
}

void PasswordField::clear() {
  line_.clear();
  changed();
}

void PasswordField::paint(QPainter* painter) {
  const auto size = line_.text().size();
  const auto first = std::max<qsizetype>(0, static_cast<qsizetype>(scrolled_ / pitch()));
  const auto last = std::min(size, first + static_cast<qsizetype>(width() / pitch()) + 2);
  const auto xOf = [this](qsizetype place) { return static_cast<qreal>(place) * pitch() - scrolled_; };
  if (line_.hasSelection()) {
    const qreal left = std::max(0.0, xOf(line_.selectionStart()));
    const qreal right = std::min(width(), xOf(line_.selectionEnd()));
    painter->fillRect(QRectF(left, 0, right - left, height()), selectionColor_);
  }
  painter->setPen(Qt::NoPen);
  for (auto place = first; place < last; ++place) {
    const bool isSelected = place >= line_.selectionStart() && place < line_.selectionEnd();
    painter->setBrush(isSelected ? selectedInk_ : ink_);
    painter->drawEllipse(QPointF(xOf(place) + pitch() / 2, height() / 2), dotSize_ / 2.0, dotSize_ / 2.0);
  }
  if (hasActiveFocus() && !line_.hasSelection()) {
    painter->fillRect(QRectF(caretX(), 0, caretWidth, height()), ink_);
  }
}

QVariant PasswordField::inputMethodQuery(Qt::InputMethodQuery query) const {
  switch (query) {
    case Qt::ImEnabled:
      return isEnabled();
    case Qt::ImCursorRectangle:
      return QRectF(caretX(), 0, caretWidth, height());
    case Qt::ImHints:
      return static_cast<int>(Qt::ImhHiddenText | Qt::ImhSensitiveData | Qt::ImhNoPredictiveText |
                              Qt::ImhNoAutoUppercase);
    default:
      return {};
  }
}

void PasswordField::keyPressEvent(QKeyEvent* event) {
  const bool isTaken = edit(*event) || move(*event);
  event->setAccepted(isTaken);
  if (isTaken) changed();
}

bool PasswordField::edit(const QKeyEvent& event) {
  // Not every desktop theme has a standard key for it.
  const bool isBare = (event.modifiers() & ~Qt::ShiftModifier) == Qt::NoModifier;
  if (event.key() == Qt::Key_Backspace && isBare) return line_.eraseTo(line_.before(line_.caret())), true;
  for (const auto& row : erasures) {
    if (event.matches(row.key)) return line_.eraseTo(placeOf(row.place, line_)), true;
  }
  if (event.matches(QKeySequence::Undo)) return line_.undo(), true;
  if (event.matches(QKeySequence::Redo)) return line_.redo(), true;
  if (event.matches(QKeySequence::Paste)) return paste(QClipboard::Clipboard), true;
  if (!isTyped(event)) return false;
  line_.insert(event.text());
  return true;
}

bool PasswordField::move(const QKeyEvent& event) {
  if (event.matches(QKeySequence::SelectAll)) return line_.selectAll(), true;
  for (const auto& row : moves) {
    if (event.matches(row.key)) return line_.moveTo(placeOf(row.place, line_), row.select), true;
  }
  return false;
}

void PasswordField::paste(int mode) {
  line_.insert(QGuiApplication::clipboard()->text(static_cast<QClipboard::Mode>(mode)));
}

void PasswordField::inputMethodEvent(QInputMethodEvent* event) {
  line_.insert(event->commitString());
  changed();
}

void PasswordField::mousePressEvent(QMouseEvent* event) {
  forceActiveFocus(Qt::MouseFocusReason);
  const bool selects = event->modifiers().testFlag(Qt::ShiftModifier);
  line_.moveTo(placeAt(event->position().x()), selects ? Select::yes : Select::no);
  if (event->button() == Qt::MiddleButton) paste(QClipboard::Selection);
  changed();
}

void PasswordField::mouseMoveEvent(QMouseEvent* event) {
  if (!event->buttons().testFlag(Qt::LeftButton)) return;
  line_.moveTo(placeAt(event->position().x()), Select::yes);
  changed();
}

void PasswordField::mouseDoubleClickEvent(QMouseEvent* /*event*/) {
  line_.selectAll();
  changed();
}

void PasswordField::focusInEvent(QFocusEvent* event) {
  QQuickPaintedItem::focusInEvent(event);
  update();
}

void PasswordField::focusOutEvent(QFocusEvent* event) {
  QQuickPaintedItem::focusOutEvent(event);
  update();
}

void PasswordField::geometryChange(const QRectF& now, const QRectF& before) {
  QQuickPaintedItem::geometryChange(now, before);
  reveal();
}

QString PasswordField::dots() const { return QString(line_.text().size(), QChar(0x2022)); }

/// Redraws the line, and announces its length where that has changed.
void PasswordField::changed() {
  reveal();
  update();
  updateInputMethod(Qt::ImCursorRectangle);
  if (std::exchange(announcedLength_, line_.text().size()) == line_.text().size()) return;
  emit textChanged();
  QAccessibleValueChangeEvent event(this, dots());
  QAccessible::updateAccessibility(&event);
}

/// Scrolls as far as the caret needs, and no further than the text does.
void PasswordField::reveal() {
  const qreal caret = static_cast<qreal>(line_.caret()) * pitch();
  const qreal end = static_cast<qreal>(line_.text().size()) * pitch() + caretWidth;
  scrolled_ = std::clamp(scrolled_, std::max(0.0, caret + caretWidth - width()), std::max(0.0, caret));
  scrolled_ = std::min(scrolled_, std::max(0.0, end - width()));
}

qsizetype PasswordField::placeAt(qreal x) const {
  const auto place = static_cast<qsizetype>(std::round((x + scrolled_) / pitch()));
  return std::clamp<qsizetype>(place, 0, line_.text().size());
}

}  // namespace ostrel
