#include "OstrelAgent/PanelAlerts.hpp"

#include <utility>

#include "OstrelAgent/Text/Copy.hpp"

namespace ostrel {

namespace {

std::string text(const Message& message) { return std::string(message.text()); }

Alert news(const Message& title, std::string reason) {
  return {text(title), std::move(reason), {text(Copy::alertButtonOk)}};
}

}  // namespace

Alert installAlert() {
  return {text(Copy::alertInstallTitle),
          text(Copy::alertInstallBody),
          {text(Copy::alertButtonInstall), text(Copy::alertButtonCancel)}};
}

Alert updateFailedAlert(const ControlSocketError& error) {
  // A daemon from before this action refuses it so.
  const bool isTooOld = error.message.starts_with("unknown ");
  return news(Copy::alertUpdateFailedTitle, isTooOld
                                                ? text(Copy::updateServiceTooOld)
                                                : error.userMessage(Copy::socketOpInstallUpdates.text()));
}

Alert filterOnFailedAlert(std::string reason) { return news(Copy::alertFilterOnTitle, std::move(reason)); }

Alert trustFailedAlert(std::string reason) { return news(Copy::alertTrustTitle, std::move(reason)); }

}  // namespace ostrel
