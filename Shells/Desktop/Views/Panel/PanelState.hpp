#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>

#include "OstrelAgent/Panel/PanelContent.hpp"
#include "Shells/Desktop/Views/Common/ValueList.hpp"
#include "Shells/Desktop/Views/Panel/PanelValues.hpp"

namespace ostrel {

/// The properties and signals of the panel's QML. A property is notified only when it changes.
class PanelState : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("The host makes it.")
  Q_PROPERTY(bool isRightToLeft MEMBER isRightToLeft_ NOTIFY isRightToLeftChanged)
  Q_PROPERTY(ostrel::HeaderValue header MEMBER header_ NOTIFY headerChanged)
  Q_PROPERTY(ostrel::RowValue status MEMBER status_ NOTIFY statusChanged)
  Q_PROPERTY(ostrel::ProtectionValue protection MEMBER protection_ NOTIFY protectionChanged)
  Q_PROPERTY(ostrel::HealthValue health MEMBER health_ NOTIFY healthChanged)
  Q_PROPERTY(double maxHeight MEMBER maxHeight_ NOTIFY maxHeightChanged)
  Q_PROPERTY(QString moreName MEMBER moreName_ NOTIFY moreNameChanged)
  Q_PROPERTY(QString moreTitles MEMBER moreTitles_ NOTIFY moreTitlesChanged)
  Q_PROPERTY(ostrel::ValueList* cards READ cards CONSTANT)
  Q_PROPERTY(ostrel::ValueList* ecosystems READ ecosystems CONSTANT)
  Q_PROPERTY(ostrel::ValueList* components READ components CONSTANT)
  Q_PROPERTY(ostrel::ValueList* facts READ facts CONSTANT)
  Q_PROPERTY(ostrel::ValueList* headerButtons READ headerButtons CONSTANT)
  Q_PROPERTY(ostrel::ValueList* footerButtons READ footerButtons CONSTANT)
  Q_PROPERTY(ostrel::ValueList* moreButtons READ moreButtons CONSTANT)
  Q_PROPERTY(ostrel::ValueList* notices READ notices CONSTANT)

 public:
  static constexpr auto screen = "Panel/StatusPanel.qml";
  static constexpr auto property = "panel";

  /// False when the content is unchanged.
  bool show(const PanelContent& content);

  ValueList* cards() { return &cards_; }
  ValueList* ecosystems() { return &ecosystems_; }
  ValueList* components() { return &components_; }
  ValueList* facts() { return &facts_; }
  ValueList* headerButtons() { return &headerButtons_; }
  ValueList* footerButtons() { return &footerButtons_; }
  ValueList* moreButtons() { return &moreButtons_; }
  ValueList* notices() { return &notices_; }

  Q_INVOKABLE void press(const ostrel::ButtonValue& button) { emit pressed(button.button); }

 signals:
  void isRightToLeftChanged();
  void headerChanged();
  void statusChanged();
  void protectionChanged();
  void healthChanged();
  void maxHeightChanged();
  void moreNameChanged();
  void moreTitlesChanged();

  /// The panel opens: folded as the content says, scrolled to its top, without focus.
  void opened(bool fadesIn);

  void pressed(const ostrel::PanelButton& button);
  void dismissed();

  /// The user has folded or unfolded a part.
  void folded();

 private:
  PanelContent content_;
  bool isRightToLeft_ = false;
  HeaderValue header_;
  RowValue status_;
  ProtectionValue protection_;
  HealthValue health_;
  double maxHeight_ = 0;
  QString moreName_;
  QString moreTitles_;
  ValueList cards_;
  ValueList ecosystems_;
  ValueList components_;
  ValueList facts_;
  ValueList headerButtons_;
  ValueList footerButtons_;
  ValueList moreButtons_;
  ValueList notices_;
};

}  // namespace ostrel
