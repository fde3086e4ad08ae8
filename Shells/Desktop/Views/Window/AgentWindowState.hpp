#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>

#include "OstrelAgent/Window/AgentWindowContent.hpp"
#include "Shells/Desktop/Views/Common/ValueList.hpp"
#include "Shells/Desktop/Views/Common/WindowState.hpp"
#include "Shells/Desktop/Views/Window/ContainersValues.hpp"
#include "Shells/Desktop/Views/Window/PageLineValues.hpp"

namespace ostrel {

/// A page in the sidebar.
struct SidebarItemValue {
  Q_GADGET
  QML_VALUE_TYPE(sidebarItemValue)
  Q_PROPERTY(int page MEMBER page)
  Q_PROPERTY(QString caption MEMBER caption)
  Q_PROPERTY(QString title MEMBER title)
  Q_PROPERTY(bool hasMark MEMBER hasMark)
  Q_PROPERTY(int kind MEMBER kind)
  Q_PROPERTY(QString accessibleName MEMBER accessibleName)

 public:
  int page = 0;     ///< an `AgentPage`
  QString caption;  ///< of the section, with its first page
  QString title;
  bool hasMark = false;
  int kind = statekind::Info;
  QString accessibleName;

  bool operator==(const SidebarItemValue&) const = default;
};

/// The properties and signals of the agent window's QML. A property is notified only when it changes.
class AgentWindowState : public WindowState {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("The host makes it.")
  Q_PROPERTY(bool isRightToLeft MEMBER isRightToLeft_ NOTIFY isRightToLeftChanged)
  Q_PROPERTY(QSizeF size MEMBER size_ NOTIFY sizeChanged)
  Q_PROPERTY(ostrel::HeaderValue header MEMBER header_ NOTIFY headerChanged)
  Q_PROPERTY(QString enrolment MEMBER enrolment_ NOTIFY enrolmentChanged)
  Q_PROPERTY(int page MEMBER page_ NOTIFY pageChanged)
  Q_PROPERTY(QString title MEMBER title_ NOTIFY titleChanged)
  Q_PROPERTY(bool isContainersPage MEMBER isContainersPage_ NOTIFY isContainersPageChanged)
  Q_PROPERTY(ostrel::RowValue status MEMBER status_ NOTIFY statusChanged)
  Q_PROPERTY(QString checking MEMBER checking_ NOTIFY checkingChanged)
  Q_PROPERTY(QString noSelection MEMBER noSelection_ NOTIFY noSelectionChanged)
  Q_PROPERTY(ostrel::RuntimeDetailValue detail MEMBER detail_ NOTIFY detailChanged)
  Q_PROPERTY(ostrel::InsideValue inside MEMBER inside_ NOTIFY insideChanged)
  Q_PROPERTY(ostrel::ValueList* sidebar READ sidebar CONSTANT)
  Q_PROPERTY(ostrel::ValueList* lines READ lines CONSTANT)
  Q_PROPERTY(ostrel::ValueList* runtimes READ runtimes CONSTANT)

 public:
  static constexpr auto screen = "Window/AgentWindow.qml";
  static constexpr auto property = "agent";

  /// False when the content is unchanged.
  bool show(const AgentWindowContent& content);

  /// What the window holds, in points.
  void setSize(QSizeF size);

  ValueList* sidebar() { return &sidebar_; }
  ValueList* lines() { return &lines_; }
  ValueList* runtimes() { return &runtimes_; }

  Q_INVOKABLE void choosePage(int page) { emit pageChosen(static_cast<ostrel::AgentPage>(page)); }

  /// The page that many places after the shown one in the sidebar, if there is one.
  Q_INVOKABLE void movePage(int by);

  /// Opens or closes a card.
  Q_INVOKABLE void fold(const ostrel::PageLineValue& card);

  Q_INVOKABLE void press(const ostrel::ButtonValue& button) { emit pressed(button.button); }
  /// Presses the button of a line.
  Q_INVOKABLE void pressLine(const ostrel::PageLineValue& line);
  Q_INVOKABLE void pressPageButton(const ostrel::PageButtonValue& button) {
    emit pageActionPressed(button.action);
  }
  Q_INVOKABLE void copy(const ostrel::CopyButtonValue& button) { emit copyPressed(button.copies); }

  /// Selects a runtime; in one column the selected one closes by that.
  Q_INVOKABLE void toggleRuntime(const QString& name);
  Q_INVOKABLE void moveRuntime(int by);

 signals:
  void isRightToLeftChanged();
  void sizeChanged();
  void headerChanged();
  void enrolmentChanged();
  void pageChanged();
  void titleChanged();
  void isContainersPageChanged();
  void statusChanged();
  void checkingChanged();
  void noSelectionChanged();
  void detailChanged();
  void insideChanged();

  /// The window opens: its page is scrolled to its top, and the sidebar has the focus.
  void opened();

  void dismissed();
  void pageChosen(ostrel::AgentPage page);
  void pressed(const ostrel::PanelButton& button);
  void pageActionPressed(ostrel::PageAction action);
  void copyPressed(ostrel::ContainersCopy what);
  void runtimeSelected(const QString& name);  ///< empty: none
  void snippetChosen(int index);
  void notifySwitched(const QString& name, bool isOn);  ///< without a name: all

 private:
  void showContainers(const ContainersPageContent& shown);

  AgentWindowContent content_;
  FoldedCards isOpened_;
  bool isRightToLeft_ = false;
  QSizeF size_;
  HeaderValue header_;
  QString enrolment_;
  int page_ = 0;
  QString title_;
  bool isContainersPage_ = false;
  RowValue status_;
  QString checking_;
  QString noSelection_;
  RuntimeDetailValue detail_;
  InsideValue inside_;
  ValueList sidebar_;
  ValueList lines_;
  ValueList runtimes_;
};

}  // namespace ostrel
