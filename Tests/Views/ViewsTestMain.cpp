#include <gtest/gtest.h>

#include <QAccessible>
#include <QGuiApplication>

#include <cstdlib>
#include <utility>

#include "Tests/Fakes/TemporaryFolder.hpp"
#include "Tests/Views/QtMessages.hpp"

namespace ostrel {
namespace {

std::vector<std::string> messages;

void note(QtMsgType type, const QMessageLogContext&, const QString& text) {
  if (type != QtDebugMsg && type != QtInfoMsg) messages.push_back(text.toStdString());
}

}  // namespace

std::vector<std::string> takeQtMessages() { return std::exchange(messages, {}); }

}  // namespace ostrel

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  const ostrel::TemporaryFolder folder;
  setenv("XDG_RUNTIME_DIR", folder.path().c_str(), 1);
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  setenv("QT_SCALE_FACTOR", "2", 1);
  const QGuiApplication application(argc, argv);
  qInstallMessageHandler(ostrel::note);
  QAccessible::setActive(true);
  return RUN_ALL_TESTS();
}
