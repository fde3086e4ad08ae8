#include "Shells/Desktop/Shell/StatusNotifierItem.hpp"

#include <gtest/gtest.h>

#include <QDBusMetaType>
#include <QDBusVariant>
#include <QElapsedTimer>
#include <QRegularExpression>
#include <algorithm>
#include <memory>
#include <vector>

#include "Tests/Shells/Desktop/Shell/DesktopTest.hpp"
#include "Tests/Shells/Desktop/Shell/SignalRecorder.hpp"
#include "Tests/Shells/Desktop/Shell/TrayWatcher.hpp"

namespace ostrel {
namespace {

const QString interface = QStringLiteral("org.kde.StatusNotifierItem");
const QString properties = QStringLiteral("org.freedesktop.DBus.Properties");

QString signatureOf(const QVariant& value) {
  if (value.canConvert<QDBusArgument>()) return value.value<QDBusArgument>().currentSignature();
  return QString::fromLatin1(QDBusMetaType::typeToSignature(value.metaType()));
}

struct StatusNotifierItemTest : DesktopTest {
  QDBusMessage callItem(const QString& of, const QString& method, const QVariantList& takes = {}) {
    return answerTo(desktop, callOf(name, StatusNotifierItem::path, of, method, takes));
  }

  QVariantMap all() {
    return qdbus_cast<QVariantMap>(callItem(properties, "GetAll", {interface}).arguments().value(0));
  }

  /// Everything that the item has sent so far has come when a later call of the same host is answered.
  QStringList signalsSoFar() {
    all();
    return signalsOfItem.names();
  }

  void setPixmaps(const QList<DBusPixmap>& pixmaps) {
    item->setPixmaps([pixmaps] { return pixmaps; });
  }

  /// Shows the item, and waits until others can call it.
  void show() {
    item->show();
    EXPECT_TRUE(spinUntil([&] { return hasName(name); }));
  }

  /// A watcher that appears while the item does may hear of it twice.
  bool isRegisteredAt(const TrayWatcher& watcher) {
    return spinUntil([&] { return !watcher.items.isEmpty(); }) &&
           watcher.items == QStringList(watcher.items.size(), name);
  }

  const QString name =
      QStringLiteral("org.kde.StatusNotifierItem-%1-1").arg(QCoreApplication::applicationPid());
  QList<QPoint> clicks;
  SignalRecorder signalsOfItem{desktop, StatusNotifierItem::path, interface};
  std::unique_ptr<StatusNotifierItem> item = std::make_unique<StatusNotifierItem>(
      program, "/Menu", log, [this](QPoint place) { clicks.append(place); });
};

TEST_F(StatusNotifierItemTest, RegistersWithTheWatcherOnceItIsShown) {
  const TrayWatcher watcher(desktop);
  item->setTitle("t");
  answerTo(desktop, callOf(programName, StatusNotifierItem::path, properties, "GetAll", {interface}));
  EXPECT_EQ(watcher.items, QStringList());
  show();
  show();
  EXPECT_TRUE(isRegisteredAt(watcher));
  item.reset();
  EXPECT_TRUE(spinUntil([&] { return !hasName(name); }));
  EXPECT_TRUE(log.lines.empty());
}

TEST_F(StatusNotifierItemTest, RegistersWithEachWatcherThatAppearsAndLogsOnceThatThereIsNone) {
  item->show();
  ASSERT_TRUE(spinUntil([&] { return !log.lines.empty(); }));
  for (int appearance = 0; appearance < 3; ++appearance) {
    const TrayWatcher watcher(desktop);
    EXPECT_TRUE(isRegisteredAt(watcher)) << appearance;
  }
  auto first = std::make_unique<TrayWatcher>(desktop);
  ASSERT_TRUE(isRegisteredAt(*first));
  auto other = bus.connect();
  const TrayWatcher heir(other);
  first.reset();
  EXPECT_TRUE(isRegisteredAt(heir)) << "a watcher that takes the name over from another";
  EXPECT_EQ(log.lines.size(), 1U);
}

TEST_F(StatusNotifierItemTest, WorksBesideAWatcherThatNeverAnswers) {
  TrayWatcher watcher(desktop);
  watcher.isAnswering = false;
  QElapsedTimer timer;
  timer.start();
  item->show();
  EXPECT_LT(timer.elapsed(), 1000);
  ASSERT_TRUE(isRegisteredAt(watcher));
  item->setToolTip("protected");
  EXPECT_EQ(all().value("IconAccessibleDesc"), "protected");
  EXPECT_EQ(signalsSoFar(), QStringList("NewToolTip"));
  item.reset();
  EXPECT_TRUE(spinUntil([&] { return !hasName(name); }));
}

TEST_F(StatusNotifierItemTest, HasEveryPropertyInTheTypeThatItDeclares) {
  setPixmaps({{2, 1, QByteArray(8, 'x')}});
  show();
  const auto xml =
      callItem("org.freedesktop.DBus.Introspectable", "Introspect").arguments().value(0).toString();
  const QRegularExpression declaration("<property name=\"(\\w+)\" type=\"([^\"]+)\"");
  QStringList declared;
  for (const auto& match : declaration.globalMatch(xml)) {
    declared.append(match.captured(1));
    const auto answer = callItem(properties, "Get", {interface, match.captured(1)});
    ASSERT_EQ(answer.signature(), "v") << qPrintable(match.captured(1) + answer.errorMessage());
    const auto value = answer.arguments().at(0).value<QDBusVariant>().variant();
    EXPECT_EQ(signatureOf(value), match.captured(2)) << qPrintable(match.captured(1));
  }
  declared.sort();
  EXPECT_EQ(declared, all().keys());
  const std::pair<const char*, const char*> types[] = {
      {"IconPixmap", "a(iiay)"}, {"ToolTip", "(sa(iiay)ss)"}, {"Menu", "o"},
      {"ItemIsMenu", "b"},       {"WindowId", "i"},           {"Title", "s"}};
  for (const auto& [property, type] : types) {
    EXPECT_TRUE(xml.contains(QStringLiteral("name=\"%1\" type=\"%2\"").arg(property, type))) << property;
  }
}

TEST_F(StatusNotifierItemTest, ReturnsThePropertiesThatWereSet) {
  setPixmaps({{1, 1, QByteArray("\x80\x01\x02\x03", 4)}, {2, 1, QByteArray(8, 'x')}});
  item->setTitle("🛡️");
  item->setToolTip("Ostrel Agent: protected");
  show();
  const auto values = all();
  const auto pixmaps = qdbus_cast<QList<DBusPixmap>>(values.value("IconPixmap"));
  ASSERT_EQ(pixmaps.size(), 2);
  EXPECT_EQ(pixmaps[0].bytes, QByteArray("\x80\x01\x02\x03", 4));
  EXPECT_EQ(pixmaps[1].width, 2);
  EXPECT_EQ(pixmaps[1].height, 1);
  EXPECT_EQ(values.value("Title"), "🛡️");
  EXPECT_EQ(values.value("IconAccessibleDesc"), "Ostrel Agent: protected");
  EXPECT_EQ(qdbus_cast<DBusToolTip>(values.value("ToolTip")).title, "Ostrel Agent: protected");
  EXPECT_EQ(values.value("Menu").value<QDBusObjectPath>().path(), "/Menu");
  EXPECT_EQ(values.value("Category"), "SystemServices");
  EXPECT_EQ(values.value("Status"), "Active");
  EXPECT_EQ(values.value("Id"), "ostrel-agent");
  EXPECT_EQ(values.value("ItemIsMenu"), false);
}

TEST_F(StatusNotifierItemTest, DrawsItsPictureForWhoeverAsks) {
  int drawings = 0;
  const auto draw = [&] {
    ++drawings;
    return QList<DBusPixmap>{{1, 1, QByteArray(4, 'x')}};
  };
  item->setPixmaps(draw);
  show();
  EXPECT_EQ(drawings, 0);
  EXPECT_EQ(qdbus_cast<QList<DBusPixmap>>(all().value("IconPixmap")).size(), 1);
  EXPECT_EQ(drawings, 1);
  item->setPixmaps(draw);
  EXPECT_EQ(signalsSoFar(), QStringList("NewIcon"));
}

TEST_F(StatusNotifierItemTest, NotifiesOfChangesOnly) {
  item->setTitle("t");
  item->setToolTip("tip");
  show();
  EXPECT_EQ(signalsSoFar(), QStringList());
  const auto setAll = [&](const char* title, const char* tip) {
    signalsOfItem.signalsTaken.clear();
    item->setTitle(title);
    item->setToolTip(tip);
    return signalsSoFar();
  };
  EXPECT_EQ(setAll("t", "tip"), QStringList());
  EXPECT_EQ(setAll("u", "tip"), QStringList("NewTitle"));
  EXPECT_EQ(setAll("u", "top"), QStringList("NewToolTip"));
  EXPECT_EQ(setAll("v", "tap"), QStringList({"NewTitle", "NewToolTip"}));
}

TEST_F(StatusNotifierItemTest, TakesClicksHoweverAHostCallsThem) {
  show();
  const QPoint place(1129, -13);
  for (const auto& of : {interface, QString()}) {
    for (const char* method : {"Activate", "SecondaryActivate"}) {
      EXPECT_EQ(callItem(of, method, {place.x(), place.y()}).type(), QDBusMessage::ReplyMessage) << method;
    }
  }
  EXPECT_EQ(clicks, QList<QPoint>(4, place));
  EXPECT_EQ(callItem(interface, "ContextMenu", {1, 2}).type(), QDBusMessage::ReplyMessage);
  EXPECT_EQ(callItem(interface, "Scroll", {120, "vertical"}).type(), QDBusMessage::ReplyMessage);
  EXPECT_EQ(clicks.size(), 4);
}

TEST_F(StatusNotifierItemTest, AnswersCallsThatAreNoneWithAnError) {
  show();
  struct Row {
    QString of;
    const char* method;
    QVariantList arguments;
  };
  const Row rows[] = {
      {properties, "Get", {interface, "Nothing"}},
      {properties, "Get", {interface}},
      {properties, "Get", {}},
      {properties, "Get", {7, 8}},
      {properties, "Get", {"org.example.Other", "Title"}},
      {properties, "GetAll", {"org.example.Other"}},
      {properties, "Set", {interface, "Title", QVariant::fromValue(QDBusVariant("x"))}},
      {properties, "Nothing", {interface}},
      {interface, "Activate", {}},
      {interface, "Activate", {"1", "2"}},
      {interface, "Activate", {1}},
      {interface, "Activate", {1, 2, 3}},
      {interface, "Activate", {1U, 2U}},
      {interface, "ContextMenu", {"here"}},
      {interface, "Nothing", {}},
      {"org.example.Other", "Activate", {1, 2}},
  };
  for (const auto& [of, method, arguments] : rows) {
    EXPECT_EQ(callItem(of, method, arguments).type(), QDBusMessage::ErrorMessage)
        << method << ' ' << arguments.size() << " of " << qPrintable(of);
  }
  EXPECT_EQ(clicks, QList<QPoint>());
  EXPECT_EQ(all().value("Id"), "ostrel-agent");
}

}  // namespace
}  // namespace ostrel
