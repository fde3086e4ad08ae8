#include <QGuiApplication>
#include <QQmlApplicationEngine>

#include "Platform/Posix/PosixFiles.hpp"
#include "SimulatedEndpoint/Settings/ApprovalQuestion.hpp"

// The simulated System Settings: asks the user at the screen about the extension, until it is ended.
int main(int argc, char** argv) {
  using namespace ostrel;
  using namespace ostrel::simulated;
  qputenv("QT_QUICK_BACKEND", "software");
  const QGuiApplication application(argc, argv);
  QGuiApplication::setQuitOnLastWindowClosed(false);
  PosixFiles files([](std::string_view path) { return std::string(path); });
  const auto root = HostRoot::fromEnvironment("");
  const ExtensionSettings settings(files, root);
  ApprovalQuestion question(settings, root.realPath(simulatedstate::systemExtension));
  QQmlApplicationEngine engine;
  engine.setInitialProperties({{"settings", QVariant::fromValue(&question)}});
  engine.load(QStringLiteral("qrc:/ApprovalDialog.qml"));
  if (engine.rootObjects().isEmpty()) return 1;
  return QGuiApplication::exec();
}
