#include <gtest/gtest.h>

#include <cstdlib>

#include "Tests/Fakes/TemporaryFolder.hpp"

int main(int count, char** arguments) {
  testing::InitGoogleTest(&count, arguments);
  const ostrel::TemporaryFolder folder;
  ::setenv("XDG_RUNTIME_DIR", folder.path().c_str(), 1);
  ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
  return RUN_ALL_TESTS();
}
