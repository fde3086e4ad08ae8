#include "Shells/Desktop/Views/Onboarding/PasswordLine.hpp"

#include <gtest/gtest.h>

namespace ostrel {
namespace {

using Select = PasswordLine::Select;

PasswordLine lineOf(const char* text) {
  PasswordLine line;
  line.insert(text);
  return line;
}

TEST(PasswordLine, PutsTextInThePlaceOfTheSelection) {
  auto line = lineOf("abcdef");
  line.moveTo(4, Select::no);
  line.moveTo(1, Select::yes);
  line.insert("X");
  EXPECT_EQ(line.text(), "aXef");
  EXPECT_EQ(line.caret(), 2);
  EXPECT_FALSE(line.hasSelection());
  line.selectAll();
  line.insert("");
  EXPECT_EQ(line.text(), "aXef") << "nothing typed removes nothing";
  line.eraseTo(0);
  EXPECT_EQ(line.text(), "");
}

TEST(PasswordLine, ErasesBothWaysAndStopsAtTheEnds) {
  auto line = lineOf("abcd");
  line.eraseTo(line.after(line.caret()));
  EXPECT_EQ(line.text(), "abcd");
  line.moveTo(2, Select::no);
  line.eraseTo(line.before(line.caret()));
  line.eraseTo(line.after(line.caret()));
  EXPECT_EQ(line.text(), "ad");
  line.moveTo(-5, Select::no);
  line.eraseTo(line.before(line.caret()));
  EXPECT_EQ(line.text(), "ad");
  line.moveTo(99, Select::yes);
  EXPECT_EQ(line.selectionEnd(), 2);
}

TEST(PasswordLine, NeverSplitsACharacterOfTwoUnits) {
  auto line = lineOf("a😀b");
  line.moveTo(line.before(line.before(line.caret())), Select::no);
  EXPECT_EQ(line.caret(), 1);
  EXPECT_EQ(line.after(1), 3);
  line.eraseTo(line.after(line.caret()));
  EXPECT_EQ(line.text(), "ab");
}

TEST(PasswordLine, UndoesAndRedoesEditsStepByStep) {
  PasswordLine line;
  for (const auto* letter : {"o", "n", "e"}) line.insert(letter);
  line.insert(" two");
  line.eraseTo(line.before(line.caret()));
  for (const auto* text : {"one two", "one", "", ""}) {
    line.undo();
    EXPECT_EQ(line.text(), text);
  }
  for (const auto* text : {"one", "one two", "one tw", "one tw"}) {
    line.redo();
    EXPECT_EQ(line.text(), text);
  }
  line.undo();
  line.insert("!");
  line.redo();
  EXPECT_EQ(line.text(), "one two!") << "a new edit ends what could be redone";
  line.selectAll();
  for (const auto* letter : {"n", "e", "w"}) line.insert(letter);
  line.undo();
  EXPECT_EQ(line.text(), "one two!") << "letters over a selection are one edit, too";
  line.clear();
  line.undo();
  EXPECT_EQ(line.text(), "");
}

}  // namespace
}  // namespace ostrel
