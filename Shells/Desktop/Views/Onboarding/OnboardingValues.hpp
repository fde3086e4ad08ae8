#pragma once

#include <QtQml/qqmlregistration.h>
#include <QList>
#include <QObject>
#include <QString>
#include <QVariant>

#include "OstrelAgent/Onboarding/OnboardingContent.hpp"
#include "Shells/Desktop/Views/Common/Shield.hpp"
#include "Shells/Desktop/Views/Common/StateKind.hpp"

namespace ostrel {

/// The heading, with its system symbol drawn as a shield.
struct OnboardingHeaderValue {
  Q_GADGET
  QML_VALUE_TYPE(onboardingHeaderValue)
  Q_PROPERTY(int form MEMBER form)
  Q_PROPERTY(bool isMarked MEMBER isMarked)
  Q_PROPERTY(int mark MEMBER mark)
  Q_PROPERTY(int tint MEMBER tint)
  Q_PROPERTY(QString title MEMBER title)
  Q_PROPERTY(QString subtitle MEMBER subtitle)

 public:
  int form = shieldform::Outlined;  ///< a `shieldform::Form`
  bool isMarked = false;
  int mark = statekind::Ok;    ///< a `statekind::Kind`
  int tint = statekind::Info;  ///< a `statekind::Kind`; `Info` is the accent
  QString title;
  QString subtitle;

  bool operator==(const OnboardingHeaderValue&) const = default;
};

struct OnboardingButtonValue {
  Q_GADGET
  QML_VALUE_TYPE(onboardingButtonValue)
  Q_PROPERTY(QString title MEMBER title)
  Q_PROPERTY(bool isPrimary MEMBER isPrimary)
  Q_PROPERTY(bool isEnabled MEMBER isEnabled)

 public:
  QString title;
  bool isPrimary = false;
  bool isEnabled = true;
  OnboardingAction action = OnboardingAction::finish;

  bool operator==(const OnboardingButtonValue&) const = default;
};

/// The field for the token. The token itself is in no value.
struct TokenFieldValue {
  Q_GADGET
  QML_VALUE_TYPE(tokenFieldValue)
  Q_PROPERTY(bool isShown MEMBER isShown)
  Q_PROPERTY(bool isEnabled MEMBER isEnabled)
  Q_PROPERTY(QString error MEMBER error)
  Q_PROPERTY(QString accessibleName MEMBER accessibleName)

 public:
  bool isShown = false;
  bool isEnabled = false;
  QString error;
  QString accessibleName;

  bool operator==(const TokenFieldValue&) const = default;
};

/// A step of the checklist.
struct StepValue {
  Q_GADGET
  QML_VALUE_TYPE(stepValue)
  Q_PROPERTY(int kind MEMBER kind)
  Q_PROPERTY(QString title MEMBER title)
  Q_PROPERTY(QString note MEMBER note)
  Q_PROPERTY(QString progress MEMBER progress)
  Q_PROPERTY(QString error MEMBER error)
  Q_PROPERTY(QVariantList buttons READ buttonList)

 public:
  int kind = statekind::Off;  ///< a `statekind::Kind`: `Ok` done, `Warn` to do, `Off` unknown
  QString title;
  QString note;
  QString progress;
  QString error;
  QList<OnboardingButtonValue> buttons;

  QVariantList buttonList() const;
  bool operator==(const StepValue&) const = default;
};

OnboardingHeaderValue valueOf(const OnboardingContent::Header& header);
OnboardingButtonValue valueOf(const OnboardingButton& button);
TokenFieldValue tokenFieldOf(const OnboardingContent& content);
StepValue valueOf(const OnboardingContent::Row& row);

}  // namespace ostrel
