#pragma once

#include <QString>

#include <algorithm>
#include <vector>

namespace ostrel {

/// The text of a password field with its caret, selection and undo steps. Places are counted in UTF-16 units
/// and clamped to the text.
class PasswordLine {
 public:
  enum class Select { no, yes };

  const QString& text() const { return now_.text; }
  qsizetype caret() const { return now_.caret; }
  qsizetype selectionStart() const { return std::min(anchor_, now_.caret); }
  qsizetype selectionEnd() const { return std::max(anchor_, now_.caret); }
  bool hasSelection() const { return anchor_ != now_.caret; }

  /// Puts the text in the place of the selection. Letters typed one after the other are undone together.
  void insert(const QString& text);

  /// Removes the selection, or else the text up to that place.
  void eraseTo(qsizetype place);

  /// Moves the caret, which selects what it passes or ends the selection.
  void moveTo(qsizetype place, Select select);
  void selectAll();

  /// The place one character away, of a character's two units never the middle.
  qsizetype before(qsizetype place) const;
  qsizetype after(qsizetype place) const;

  void undo() { step(past_, future_); }
  void redo() { step(future_, past_); }

  /// Forgets text and edits.
  void clear() { *this = {}; }

 private:
  struct State {
    QString text;
    qsizetype caret = 0;
  };

  void remember();
  void removeSelection();
  void step(std::vector<State>& from, std::vector<State>& to);

  State now_;
  qsizetype anchor_ = 0;
  std::vector<State> past_;
  std::vector<State> future_;
  bool isTyping_ = false;
};

}  // namespace ostrel
