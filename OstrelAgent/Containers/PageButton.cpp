#include "OstrelAgent/Containers/PageButton.hpp"

#include "OstrelAgent/Text/Copy.hpp"

namespace ostrel {

namespace {

const Message& titleOf(PageAction action) {
  switch (action) {
    case PageAction::allowNotifications:
      return Copy::buttonAllowNotifications;
    case PageAction::openNotificationSettings:
      return Copy::buttonOpenNotificationSettings;
    case PageAction::revealBundle:
      break;
  }
  return Copy::buttonRevealBundle;
}

}  // namespace

PageButton PageButton::of(PageAction action) { return {std::string(titleOf(action).text()), action}; }

}  // namespace ostrel
