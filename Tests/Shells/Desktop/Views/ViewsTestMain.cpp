#include <gtest/gtest.h>

#include <QAccessible>
#include <QGuiApplication>

#include <cstdlib>
#include <utility>

#include "Tests/Fakes/TemporaryFolder.hpp"
#include "Tests/Shells/Desktop/Views/QtMessages.hpp"

namespace ostrel {
namespace {

std::vector<std::string> messages;

void note(QtMsgType type, const QMessageLogContext&, const QString& text) {
  // Only the platform without a screen has no use for the least and the largest size of a window.
  const bool isOfPlatform = text == QLatin1String("This plugin does not support propagateSizeHints()");
  if (type != QtDebugMsg && type != QtInfoMsg && !isOfPlatform) messages.push_back(text.toStdString());
}

}  // namespace

std::vector<std::string> takeQtMessages() { return std::exchange(messages, {}); }

}  // namespace ostrel

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  const ostrel::TemporaryFolder folder;
  setenv("XDG_RUNTIME_DIR", folder.path().c_str(), 1);
  const auto screens = folder.write("screens.json", R"({"screens":[
    {"name":"left","x":0,"y":0,"width":2000,"height":2000,"logicalDpi":96,"logicalBaseDpi":96,"dpr":1},
    {"name":"right","x":2000,"y":0,"width":2000,"height":2000,"logicalDpi":96,"logicalBaseDpi":96,"dpr":2}]})");
  setenv("QT_QPA_PLATFORM", ("offscreen:configfile=" + screens).c_str(), 1);
  setenv("QT_SCALE_FACTOR", "2", 1);
  const QGuiApplication application(argc, argv);
  qInstallMessageHandler(ostrel::note);
  QAccessible::setActive(true);
  return RUN_ALL_TESTS();
}
