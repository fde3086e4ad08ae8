#pragma once

#include <QtQml/qqmlregistration.h>
#include <QString>

#include "OstrelAgent/Onboarding/OnboardingContent.hpp"
#include "Shells/Desktop/Views/Common/ValueList.hpp"
#include "Shells/Desktop/Views/Common/WindowState.hpp"
#include "Shells/Desktop/Views/Onboarding/OnboardingValues.hpp"

namespace ostrel {

/// The properties and signals of the onboarding window's QML. A property is notified only when it changes.
class OnboardingState : public WindowState {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("The host makes it.")
  Q_PROPERTY(bool isRightToLeft MEMBER isRightToLeft_ NOTIFY isRightToLeftChanged)
  Q_PROPERTY(ostrel::OnboardingHeaderValue header MEMBER header_ NOTIFY headerChanged)
  Q_PROPERTY(ostrel::TokenFieldValue tokenField MEMBER tokenField_ NOTIFY tokenFieldChanged)
  Q_PROPERTY(QString progress MEMBER progress_ NOTIFY progressChanged)
  Q_PROPERTY(QString closingNote MEMBER closingNote_ NOTIFY closingNoteChanged)
  Q_PROPERTY(ostrel::ValueList* paragraphs READ paragraphs CONSTANT)
  Q_PROPERTY(ostrel::ValueList* steps READ steps CONSTANT)
  Q_PROPERTY(ostrel::ValueList* buttons READ buttons CONSTANT)

 public:
  static constexpr auto screen = "Onboarding/Onboarding.qml";
  static constexpr auto property = "onboarding";

  /// False when the content is unchanged.
  bool show(const OnboardingContent& content);

  ValueList* paragraphs() { return &paragraphs_; }
  ValueList* steps() { return &steps_; }
  ValueList* buttons() { return &buttons_; }

  Q_INVOKABLE void press(const ostrel::OnboardingButtonValue& button, const QString& token) {
    emit pressed(button.action, token);
  }

  /// Presses the primary button, as far as there is one that can be pressed.
  Q_INVOKABLE void pressPrimary(const QString& token);

 signals:
  void isRightToLeftChanged();
  void headerChanged();
  void tokenFieldChanged();
  void progressChanged();
  void closingNoteChanged();

  /// The window opens or shows another stage: the token field gets the focus or, without one, no control.
  void stageChanged();

  /// The field is to be emptied.
  void tokenCleared();

  void pressed(ostrel::OnboardingAction action, const QString& token);

 private:
  OnboardingContent content_;
  bool isRightToLeft_ = false;
  OnboardingHeaderValue header_;
  TokenFieldValue tokenField_;
  QString progress_;
  QString closingNote_;
  ValueList paragraphs_;
  ValueList steps_;
  ValueList buttons_;
};

}  // namespace ostrel
