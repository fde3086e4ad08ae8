#pragma once

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "OstrelAgent/Containers/ContainerSnippet.hpp"
#include "OstrelAgent/Containers/ContainerTrustReading.hpp"
#include "OstrelAgent/Containers/PageButton.hpp"
#include "OstrelAgent/Text/TextDirection.hpp"
#include "Platform/UserNotifications.hpp"

namespace ostrel {

/// What a copy button of the containers page puts on the pasteboard.
enum class ContainersCopy { setupCommand, guestCommand, bundlePath, snippet };

/// The short marks of a runtime, in the order in which they are shown.
enum class ContainerChip { blocked, restart, running, installed };

/// Everything that the containers page shows, as plain comparable data; every view of the page draws it.
struct ContainersPageContent {
  struct Chip {
    ContainerChip kind = ContainerChip::running;
    std::string text;

    bool operator==(const Chip&) const = default;
  };

  struct Row {
    std::string name;
    std::vector<Chip> chips;  ///< a list shows the first
    bool isSelected = false;

    bool operator==(const Row&) const = default;
  };

  struct Section {
    std::string caption;
    std::vector<Row> rows;  ///< may be empty

    bool operator==(const Section&) const = default;
  };

  struct CopyButton {
    ContainersCopy copies = ContainersCopy::snippet;
    std::string title;
    std::string copied;  ///< stands in place of the title for a while after it has copied; else empty

    bool operator==(const CopyButton&) const = default;
  };

  /// A command as it is shown, and the button that copies it whole.
  struct Command {
    std::string shown;
    CopyButton button;

    bool operator==(const Command&) const = default;
  };

  /// The selected runtime.
  struct Detail {
    std::string name;
    std::vector<Chip> chips;
    std::string state;
    std::string blocked;  ///< what a block means; empty without one
    std::optional<Command> setup;
    std::optional<Command> guest;
    PageButton reveal;
    CopyButton copyPath;
    std::string notifyLabel;
    bool isNotifyOn = false;

    bool operator==(const Detail&) const = default;
  };

  /// How a container is started so that it trusts the certificate.
  struct Inside {
    std::string title;
    std::string lede;
    std::vector<std::string> choices;  ///< of the picker, in the order of `containerSnippets`
    std::size_t chosen = 0;            ///< index of the shown one
    Command snippet;
    std::string covers;

    bool operator==(const Inside&) const = default;
  };

  TextDirection direction = TextDirection::leftToRight;  ///< of the user's language
  std::string title;
  std::string checking;  ///< in place of the sections before the first reading; else empty
  std::vector<Section> sections;
  std::string noSelection;  ///< in place of the detail; else empty
  std::optional<Detail> detail;
  std::string authorization;  ///< why no notification appears; else empty
  std::optional<PageButton> authorizationButton;
  Inside inside;

  bool operator==(const ContainersPageContent&) const = default;
};

/// The state of the containers page.
struct ContainersPage {
  struct Section {
    std::string caption;
    std::vector<ContainerTrustReading::Row> rows;
  };

  ContainerTrustReading reading = {};
  bool hasReading = false;            ///< the first reading has ended
  std::set<std::string> notify = {};  ///< runtimes about which the user wants to be notified
  std::optional<std::string> selected = {};
  std::optional<NotificationAuthorization> notificationAuthorization = {};  ///< nullopt until it is known
  ContainerSnippet snippet = ContainerSnippet::dockerRun;
  std::optional<ContainersCopy> copied = {};  ///< the copy button that has just copied

  /// What can be done about a row's trust, its file sharing, a restart and a block, in sentences.
  std::string runtimeState(const ContainerTrustReading::Row& row) const;

  /// Blocked, installed and other runtimes; a section may be empty.
  std::vector<Section> sections() const;

  /// The row of the selected runtime, or null.
  const ContainerTrustReading::Row* selectedRow() const;

  /// The text that a copy button puts on the pasteboard; nullopt when there is nothing to copy.
  std::optional<std::string> textToCopy(ContainersCopy copy) const;

  /// Whether notifications appear; empty until it is known.
  std::string authorizationText() const;

  /// What the user can do so that they appear.
  std::optional<PageButton> authorizationButton() const;

  /// The runtimes that the user can choose for notifications: those of this Mac and the chosen
  /// ones, unknown ones included.
  std::set<std::string> listedForNotifications() const;

  ContainersPageContent content() const;

  bool operator==(const ContainersPage&) const = default;
};

}  // namespace ostrel
