#include "OstrelAgent/Containers/ContainersPage.hpp"

#include <algorithm>

#include "OstrelAgent/Containers/TrustBundle.hpp"
#include "OstrelAgent/Text/Copy.hpp"

namespace ostrel {

namespace {

using Row = ContainerTrustReading::Row;
using Content = ContainersPageContent;
using Trust = ContainerRuntime::Trust;

/// Virtual machines that other tools start, too.
bool isStartedByOtherTools(const ContainerRuntime& runtime) {
  return runtime.name == "vfkit" || runtime.name == "QEMU";
}

const Message& trustState(Trust trust, bool hasBundle) {
  switch (trust) {
    case Trust::keychainForPulls:
      return Copy::containerTrustStatePullsTrust;
    case Trust::vmManual:
      return Copy::containerTrustStateVmNeedsSetup;
    case Trust::certsDir:
      return Copy::containerTrustStateCertsDir;
    case Trust::guestOwned:
      return hasBundle ? Copy::containerTrustStateGuestOwned : Copy::containerTrustStateGuestOwnedNoBundle;
    case Trust::noHostTrust:
      break;
  }
  return Copy::containerTrustStateNoHostTrust;
}

const Message& fileSharing(std::optional<bool> dockerSharesLibrary) {
  if (!dockerSharesLibrary) return Copy::containerTrustStateDockerSharing;
  return *dockerSharesLibrary ? Copy::containerTrustStateDockerShared
                              : Copy::containerTrustStateDockerNotShared;
}

std::vector<Content::Chip> chipsOf(const Row& row) {
  std::vector<Content::Chip> chips;
  const auto add = [&chips](bool applies, ContainerChip kind, const Message& text) {
    if (applies) chips.push_back({kind, std::string(text.text())});
  };
  add(row.blocked, ContainerChip::blocked, Copy::chipBlocked);
  add(row.needsRestart, ContainerChip::restart, Copy::chipRestart);
  add(row.running, ContainerChip::running, Copy::chipRunning);
  add(row.installed && !row.running, ContainerChip::installed, Copy::chipInstalled);
  return chips;
}

const Message& titleOf(ContainersCopy copy) {
  switch (copy) {
    case ContainersCopy::setupCommand:
      return Copy::buttonCopySetupCommand;
    case ContainersCopy::guestCommand:
      return Copy::buttonCopyGuestCommand;
    case ContainersCopy::bundlePath:
      return Copy::buttonCopyBundlePath;
    case ContainersCopy::snippet:
      break;
  }
  return Copy::buttonCopy;
}

std::optional<std::string> guestCommandOf(const ContainersPage& page, bool isPreview) {
  const auto* row = page.selectedRow();
  if (row == nullptr || row->runtime.trust != Trust::guestOwned) return std::nullopt;
  const auto& pem = page.reading.bundlePEM;
  return isPreview ? ContainerRuntime::guestCommandPreview(pem) : ContainerRuntime::guestCommand(pem);
}

/// Writes the content of one page.
class Writer {
 public:
  explicit Writer(const ContainersPage& page) : page_(page) {}

  Content content() const {
    Content content;
    content.direction = directionOf(Copy::containerTrustInsideTitle.text());
    content.title = Copy::windowPageContainers.text();
    content.inside = inside();
    if (!page_.hasReading) {
      content.checking = Copy::statusChecking.text();
      return content;
    }
    for (const auto& section : page_.sections()) content.sections.push_back(sectionOf(section));
    const auto* row = page_.selectedRow();
    if (row == nullptr) {
      content.noSelection = Copy::containersNoSelection.text();
      return content;
    }
    content.detail = detailOf(*row);
    if (page_.notificationAuthorization && !isAuthorized(*page_.notificationAuthorization)) {
      content.authorization = page_.authorizationText();
      content.authorizationButton = page_.authorizationButton();
    }
    return content;
  }

 private:
  Content::Section sectionOf(const ContainersPage::Section& section) const {
    Content::Section shown{section.caption, {}};
    for (const auto& row : section.rows) {
      shown.rows.push_back({std::string(row.runtime.name), chipsOf(row), page_.selected == row.runtime.name});
    }
    return shown;
  }

  Content::CopyButton button(ContainersCopy copy) const {
    const bool isCopied = page_.copied == copy;
    return {copy, std::string(titleOf(copy).text()), std::string(isCopied ? Copy::buttonCopied.text() : "")};
  }

  std::optional<Content::Command> command(std::optional<std::string> shown, ContainersCopy copy) const {
    if (!shown) return std::nullopt;
    return Content::Command{*std::move(shown), button(copy)};
  }

  Content::Detail detailOf(const Row& row) const {
    const std::string name(row.runtime.name);
    return {
        .name = name,
        .chips = chipsOf(row),
        .state = page_.runtimeState(row),
        .blocked = row.blocked ? std::string(Copy::containerTrustSubtitleBlocked.text()) : std::string(),
        .setup = command(row.runtime.vmSetupCommand(), ContainersCopy::setupCommand),
        .guest = command(guestCommandOf(page_, true), ContainersCopy::guestCommand),
        .reveal = PageButton::of(PageAction::revealBundle),
        .copyPath = button(ContainersCopy::bundlePath),
        .notifyLabel = Copy::containerTrustNotifyFor.with(name),
        .isNotifyOn = page_.notify.contains(name),
    };
  }

  Content::Inside inside() const {
    Content::Inside inside{.title = std::string(Copy::containerTrustInsideTitle.text()),
                           .lede = std::string(Copy::containerTrustInsideLede.text()),
                           .choices = {},
                           .chosen = static_cast<std::size_t>(page_.snippet),
                           .snippet = {textOf(page_.snippet), button(ContainersCopy::snippet)},
                           .covers = std::string(Copy::containerTrustCovers.text())};
    for (const auto snippet : containerSnippets) inside.choices.emplace_back(titleOf(snippet));
    return inside;
  }

  const ContainersPage& page_;
};

}  // namespace

std::string ContainersPage::runtimeState(const Row& row) const {
  std::string state(trustState(row.runtime.trust, reading.bundlePEM.has_value()).text());
  if (isStartedByOtherTools(row.runtime)) state += Copy::containerTrustStateLauncherHint.text();
  if (!row.runtime.sharesLibrary) state += fileSharing(reading.dockerSharesLibrary).text();
  if (row.needsRestart) state += Copy::containerTrustStateRestartSuffix.text();
  if (row.blocked) state += Copy::containerTrustStateBlockedSuffix.text();
  return state;
}

std::vector<ContainersPage::Section> ContainersPage::sections() const {
  std::vector<Section> sections = {
      {std::string(Copy::containersCaptionBlocked.text()), {}},
      {std::string(Copy::containersCaptionInstalled.text()), {}},
      {std::string(Copy::containersCaptionNotInstalled.text()), {}},
  };
  for (const auto& row : reading.rows) {
    sections[row.blocked ? 0 : row.installed || row.running ? 1 : 2].rows.push_back(row);
  }
  return sections;
}

const Row* ContainersPage::selectedRow() const {
  if (!selected) return nullptr;
  const auto row =
      std::ranges::find(reading.rows, *selected, [](const Row& each) { return each.runtime.name; });
  return row == reading.rows.end() ? nullptr : &*row;
}

std::string ContainersPage::authorizationText() const {
  if (!notificationAuthorization) return {};
  switch (*notificationAuthorization) {
    case NotificationAuthorization::notDetermined:
      return std::string(Copy::notificationsNotDetermined.text());
    case NotificationAuthorization::denied:
      return std::string(Copy::notificationsDenied.text());
    case NotificationAuthorization::authorized:
      break;
  }
  return std::string(Copy::notificationsAuthorized.text());
}

std::optional<PageButton> ContainersPage::authorizationButton() const {
  if (notificationAuthorization == NotificationAuthorization::notDetermined) {
    return PageButton::of(PageAction::allowNotifications);
  }
  if (notificationAuthorization == NotificationAuthorization::denied) {
    return PageButton::of(PageAction::openNotificationSettings);
  }
  return std::nullopt;
}

std::set<std::string> ContainersPage::listedForNotifications() const {
  auto names = notify;
  for (const auto& row : reading.rows) {
    if (row.installed || row.running || row.blocked) names.emplace(row.runtime.name);
  }
  return names;
}

std::optional<std::string> ContainersPage::textToCopy(ContainersCopy copy) const {
  const auto* row = selectedRow();
  switch (copy) {
    case ContainersCopy::setupCommand:
      return row == nullptr ? std::nullopt : row->runtime.vmSetupCommand();
    case ContainersCopy::guestCommand:
      return guestCommandOf(*this, false);
    case ContainersCopy::bundlePath:
      return std::string(trustbundle::file);
    case ContainersCopy::snippet:
      return textOf(snippet);
  }
  return std::nullopt;
}

ContainersPageContent ContainersPage::content() const { return Writer(*this).content(); }

}  // namespace ostrel
