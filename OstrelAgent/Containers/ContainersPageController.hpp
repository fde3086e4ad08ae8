#pragma once

#include <chrono>
#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "OstrelAgent/Containers/ContainerReader.hpp"
#include "OstrelAgent/Containers/ContainerTrustPreferences.hpp"
#include "OstrelAgent/Containers/ContainersPage.hpp"
#include "Platform/Log.hpp"
#include "Platform/MainQueue.hpp"
#include "Platform/Pasteboard.hpp"

namespace ostrel {

/// Keeps the running container runtimes and the state of the containers page current. Main thread; callbacks
/// hold it weakly.
class ContainersPageController : public std::enable_shared_from_this<ContainersPageController> {
 public:
  static constexpr std::chrono::milliseconds copiedTime{2000};

  struct Services {
    Pasteboard& pasteboard;
    UserNotifications& notifications;
    MainQueue& mainQueue;
    Log& log;
  };

  struct Collaborators {
    std::shared_ptr<ContainerReader> reader;
    std::shared_ptr<ContainerTrustPreferences> preferences;
  };

  using RunningListener = std::function<void(std::vector<std::string>)>;

  ContainersPageController(Services services, Collaborators collaborators);

  /// `runningChanged` receives the names of the running runtimes, sorted, after each change; `changed` runs
  /// after each change of what the page shows. Call once.
  void start(RunningListener runningChanged, std::function<void()> changed);

  /// Requests a reading, of all that the page shows while it is shown.
  void refresh();

  /// The work of such a reading, to be run on a background thread; empty while one is under way.
  std::function<void()> beginRefresh();

  /// Takes the block of a new status reading.
  void publish(std::optional<ContainerBlock> block);

  /// The page with the stored choice of notifications.
  ContainersPage page() const;

  /// A page that begins to show is read anew, with the user's decision about notifications.
  void setShown(bool isShown);

  void readAuthorization();

  /// Selects a runtime, or none when the name is empty.
  void select(const std::string& name);

  void choose(ContainerSnippet snippet);

  /// False when nothing was copied.
  bool copy(ContainersCopy what);

  // Both return false when the choice was not stored. All cannot be switched on while none is listed.
  bool setNotify(const std::string& runtime, bool isOn);
  bool setAllNotify(bool isOn);

 private:
  ContainerReader::Scope scope() const;
  void apply(const ContainerFindings& findings);
  void applyRunning(const ContainerFindings& findings);
  void setAuthorization(std::optional<NotificationAuthorization> authorization);
  void showCopied(std::optional<ContainersCopy> copied);
  bool report(const std::expected<void, PlatformError>& stored);

  Services services_;
  Collaborators collaborators_;
  RunningListener runningChanged_;
  std::function<void()> changed_;
  std::vector<std::string> runningNames_;
  ContainerFindings findings_;
  std::optional<ContainerBlock> block_;
  ContainersPage page_;
  ScheduledWork copiedToken_;  ///< ends `page_.copied`
  bool isShown_ = false;
};

}  // namespace ostrel
