#include "Shells/Desktop/Shell/StatusItemMenu.hpp"

#include <gtest/gtest.h>

#include <QDBusMetaType>
#include <QDBusVariant>

#include "Tests/Shells/Desktop/Shell/DesktopTest.hpp"
#include "Tests/Shells/Desktop/Shell/SignalRecorder.hpp"

namespace ostrel {
namespace {

const QString interface = QStringLiteral("com.canonical.dbusmenu");
const QString properties = QStringLiteral("org.freedesktop.DBus.Properties");

const PanelButton check{.title = "Check _now", .action = PanelAction::checkNow};
const PanelButton open{.title = "Open", .action = PanelAction::openAgentWindow, .isEnabled = false};
const PanelButton quit{.title = "Quit", .action = PanelAction::quitStatusIcon};

QVariantMap shown(const char* label, bool isEnabled) {
  return {{"label", label}, {"enabled", isEnabled}, {"visible", true}};
}

QVariant click(int id, const char* event = "clicked") {
  return QVariant::fromValue(QList<DBusMenuEvent>{{id, event}});
}

struct StatusItemMenuTest : DesktopTest {
  StatusItemMenuTest() { menu.setButtons({check, open, quit}); }

  QDBusMessage callMenu(const QString& method, const QVariantList& takes, const QString& of = interface) {
    return answerTo(desktop, callOf(programName, StatusItemMenu::path, of, method, takes));
  }

  QDBusMessage event(int id, const char* name = "clicked") {
    return callMenu("Event", {id, name, QVariant::fromValue(QDBusVariant("")), 0U});
  }

  DBusMenuItem layout(int parent, int depth) {
    const auto answer = callMenu("GetLayout", {parent, depth, QStringList{"label", "enabled"}});
    EXPECT_EQ(answer.signature(), "u(ia{sv}av)") << qPrintable(answer.errorMessage());
    return qdbus_cast<DBusMenuItem>(answer.arguments().value(1));
  }

  QList<DBusMenuProperties> group(const QList<int>& ids) {
    const auto answer = callMenu("GetGroupProperties", {QVariant::fromValue(ids), QStringList()});
    EXPECT_EQ(answer.signature(), "a(ia{sv})");
    return qdbus_cast<QList<DBusMenuProperties>>(answer.arguments().value(0));
  }

  std::vector<PanelButton> pressed;
  bool isEmptiedByPress = false;
  SignalRecorder signalsOfMenu{desktop, StatusItemMenu::path, interface};
  StatusItemMenu menu{program, [this](const PanelButton& button) {
                        if (isEmptiedByPress) menu.setButtons({});
                        pressed.push_back(button);
                      }};
};

TEST_F(StatusItemMenuTest, GivesItsLayoutAsHostsReadIt) {
  for (const int depth : {-1, 1, 7}) {
    const auto root = layout(0, depth);
    EXPECT_EQ(root.id, 0);
    EXPECT_EQ(root.properties.value("children-display"), "submenu");
    ASSERT_EQ(root.children.size(), 3) << depth;
    EXPECT_EQ(root.children[0].properties, shown("Check __now", true));
    EXPECT_EQ(root.children[1].properties, shown("Open", false));
    EXPECT_EQ(root.children[2].properties, shown("Quit", true));
    for (int child = 0; child < 3; ++child) EXPECT_EQ(root.children[child].id, child + 1);
  }
  EXPECT_TRUE(layout(0, 0).children.isEmpty());
  EXPECT_EQ(layout(3, -1).properties, shown("Quit", true));
  menu.setButtons({});
  EXPECT_TRUE(layout(0, -1).children.isEmpty());
}

// A host that finds a variant in a variant there takes it for damage.
TEST_F(StatusItemMenuTest, PutsEachChildIntoOneVariantAlone) {
  const auto answer = callMenu("GetLayout", {0, -1, QStringList()});
  const auto root = answer.arguments().value(1).value<QDBusArgument>();
  root.beginStructure();
  int id = -1;
  QVariantMap values;
  root >> id >> values;
  root.beginArray();
  int children = 0;
  for (; !root.atEnd(); ++children) {
    QDBusVariant child;
    root >> child;
    EXPECT_EQ(child.variant().value<QDBusArgument>().currentSignature(), "(ia{sv}av)");
  }
  root.endArray();
  root.endStructure();
  EXPECT_EQ(children, 3);
}

TEST_F(StatusItemMenuTest, GivesThePropertiesOfTheItemsAskedFor) {
  const auto all = group({});
  ASSERT_EQ(all.size(), 4);
  EXPECT_EQ(all[3].properties, shown("Quit", true));
  const auto some = group({2, 99, -1, 1});
  ASSERT_EQ(some.size(), 2);
  EXPECT_EQ(some[0].id, 2);
  EXPECT_EQ(some[0].properties, shown("Open", false));
  EXPECT_EQ(some[1].properties, shown("Check __now", true));
  const auto one = callMenu("GetProperty", {1, "label"});
  EXPECT_EQ(one.arguments().value(0).value<QDBusVariant>().variant(), "Check __now");
  const auto version = callMenu("Get", {interface, "Version"}, properties);
  EXPECT_EQ(version.arguments().value(0).value<QDBusVariant>().variant(), 3U);
  const auto own = callMenu("GetAll", {interface}, properties);
  EXPECT_EQ(qdbus_cast<QVariantMap>(own.arguments().value(0)).keys(),
            QStringList({"IconThemePath", "Status", "TextDirection", "Version"}));
}

TEST_F(StatusItemMenuTest, RunsAsTheTextsOfItsLanguageDo) {
  const auto direction = [&] {
    const auto answer = callMenu("Get", {interface, "TextDirection"}, properties);
    return answer.arguments().value(0).value<QDBusVariant>().variant();
  };
  EXPECT_EQ(direction(), "ltr");
  menu.setButtons({{.title = "إنهاء", .action = PanelAction::quitStatusIcon}});
  EXPECT_EQ(direction(), "rtl");
  menu.setButtons({});
  EXPECT_EQ(direction(), "ltr");
}

TEST_F(StatusItemMenuTest, PassesTheButtonThatWasClicked) {
  EXPECT_EQ(event(1).signature(), "");
  EXPECT_EQ(callMenu("EventGroup", {click(3)}).signature(), "ai");
  EXPECT_EQ(pressed, (std::vector{check, quit}));
  pressed.clear();
  for (const char* other : {"hovered", "opened", "closed", "Clicked", ""}) event(1, other);
  for (const int id : {0, 2, -1, 4, 1 << 30}) event(id);
  const QList<DBusMenuEvent> events = {{9, "clicked"}, {2, "clicked"}, {3, "hovered"}, {-7, "clicked"}};
  const auto answer = callMenu("EventGroup", {QVariant::fromValue(events)});
  EXPECT_EQ(qdbus_cast<QList<int>>(answer.arguments().value(0)), QList<int>({9, -7}));
  EXPECT_EQ(pressed, std::vector<PanelButton>{});
}

TEST_F(StatusItemMenuTest, NeedsNoUpdateBeforeItIsShown) {
  const auto one = callMenu("AboutToShow", {0});
  EXPECT_EQ(one.arguments(), QVariantList{false});
  const auto group = callMenu("AboutToShowGroup", {QVariant::fromValue(QList<int>{0})});
  EXPECT_EQ(group.signature(), "aiai");
}

TEST_F(StatusItemMenuTest, AnswersCallsThatAreNoneWithAnError) {
  const std::pair<const char*, QVariantList> rows[] = {
      {"GetLayout", {}},
      {"GetLayout", {"0", -1, QStringList()}},
      {"GetLayout", {0, -1}},
      {"GetLayout", {17, -1, QStringList()}},
      {"GetLayout", {-1, -1, QStringList()}},
      {"GetGroupProperties", {QStringList(), QStringList()}},
      {"GetProperty", {1}},
      {"GetProperty", {17, "label"}},
      {"GetProperty", {1, "colour"}},
      {"Event", {1, "clicked"}},
      {"EventGroup", {1}},
      {"AboutToShow", {"0"}},
      {"AboutToShowGroup", {0}},
      {"Nothing", {}},
  };
  for (const auto& [method, takes] : rows) {
    EXPECT_EQ(callMenu(method, takes).type(), QDBusMessage::ErrorMessage) << method << ' ' << takes.size();
  }
  EXPECT_EQ(pressed, std::vector<PanelButton>{});
}

TEST_F(StatusItemMenuTest, NotifiesOfALayoutThatHasChanged) {
  const auto revision = [&] {
    return callMenu("GetLayout", {0, 0, QStringList()}).arguments().value(0).toUInt();
  };
  const auto before = revision();
  signalsOfMenu.signalsTaken.clear();
  menu.setButtons({check, open, quit});
  EXPECT_EQ(revision(), before);
  EXPECT_EQ(signalsOfMenu.names(), QStringList());
  menu.setButtons({check, quit});
  EXPECT_GT(revision(), before);
  ASSERT_EQ(signalsOfMenu.names(), QStringList("LayoutUpdated"));
  EXPECT_EQ(signalsOfMenu.signalsTaken[0].signature(), "ui");
  EXPECT_EQ(signalsOfMenu.signalsTaken[0].arguments(), (QVariantList{revision(), 0}));
}

TEST_F(StatusItemMenuTest, MayChangeWhileOneOfItsItemsIsPressed) {
  isEmptiedByPress = true;
  const QList<DBusMenuEvent> events = {{3, "clicked"}, {1, "clicked"}};
  callMenu("EventGroup", {QVariant::fromValue(events)});
  EXPECT_EQ(pressed, std::vector{quit});
}

}  // namespace
}  // namespace ostrel
