#pragma once

#include <string>

namespace ostrel {

/// What a button of the agent window does besides the panel's actions and copies.
enum class PageAction { revealBundle, allowNotifications, openNotificationSettings };

struct PageButton {
  std::string title;
  PageAction action = PageAction::revealBundle;

  static PageButton of(PageAction action);

  bool operator==(const PageButton&) const = default;
};

}  // namespace ostrel
