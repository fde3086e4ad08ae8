#include <QAccessible>
#include <QInputMethodQueryEvent>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>

#include "Tests/Shells/Desktop/Views/ViewTest.hpp"

namespace ostrel {
namespace {

/// Why the token has a field of its own. When this fails, the toolkit's field may take its place.
TEST(PasswordField, TheToolkitsOwnFieldGivesItsTextToAssistiveToolsInputMethodsAndUndo) {
  QQmlEngine engine;
  QQmlComponent component(&engine);
  component.setData(
      "import QtQuick\nTextInput { echoMode: TextInput.Password; text: 'secret'; Accessible.role: "
      "Accessible.EditableText }",
      {});
  const std::unique_ptr<QObject> made(component.create());
  auto* input = qobject_cast<QQuickItem*>(made.get());
  ASSERT_NE(input, nullptr) << component.errorString().toStdString();
  QQuickWindow window;
  input->setParentItem(window.contentItem());

  auto* spoken = QAccessible::queryAccessibleInterface(input);
  ASSERT_NE(spoken, nullptr);
  EXPECT_EQ(spoken->text(QAccessible::Value), "secret");

  QInputMethodQueryEvent query(Qt::ImSurroundingText);
  QCoreApplication::sendEvent(input, &query);
  EXPECT_EQ(query.value(Qt::ImSurroundingText), "secret");

  QMetaObject::invokeMethod(input, "clear");
  QMetaObject::invokeMethod(input, "undo");
  EXPECT_EQ(input->property("text"), "secret");
  input->setParentItem(nullptr);
}

}  // namespace
}  // namespace ostrel
