#include "Platform/Desktop/Shell/IconImage.hpp"

#include <gtest/gtest.h>

namespace ostrel {
namespace {

TEST(IconImage, HasNoGlyphWhereThereIsNoFile) {
  EXPECT_FALSE(hasGlyph("/nowhere", "ostrel-menubar-light"));
  EXPECT_FALSE(loadGlyph("/nowhere", "ostrel-menubar-light", 3));
}

}  // namespace
}  // namespace ostrel
