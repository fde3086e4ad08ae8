#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "OstrelAgent/Containers/ContainerReader.hpp"
#include "OstrelAgent/Containers/ContainerTrustPreferences.hpp"
#include "OstrelAgent/Containers/ContainersPage.hpp"
#include "Platform/ContainersScreen.hpp"
#include "Platform/Log.hpp"
#include "Platform/Pasteboard.hpp"

namespace ostrel {

/// Keeps the running container runtimes and the containers page current. Main thread; callbacks hold it
/// weakly.
class ContainersPageController : public std::enable_shared_from_this<ContainersPageController> {
 public:
  struct Services {
    ContainersScreen& screen;
    Pasteboard& pasteboard;
    UserNotifications& notifications;
    Log& log;
  };

  struct Collaborators {
    std::shared_ptr<ContainerReader> reader;
    std::shared_ptr<ContainerTrustPreferences> preferences;
  };

  ContainersPageController(Services services, Collaborators collaborators);

  /// `runningChanged` receives the names of the running runtimes, sorted, after each change. Call once.
  void start(std::function<void(std::vector<std::string>)> runningChanged);

  /// Requests a reading, of all that the page shows while it is open.
  void refresh();

  /// The work of such a reading, to be run on a background thread; empty while one is under way.
  std::function<void()> beginRefresh();

  /// Takes the block of a new status reading.
  void publish(std::optional<ContainerBlock> block);

 private:
  void open();
  void select(const std::string& name);
  void choose(ContainerSnippet snippet);
  bool copy(ContainersCopy copy);
  bool setNotify(const std::string& runtime, bool isOn);
  void apply(const ContainerFindings& findings);
  void refreshPage();
  void readAuthorization();
  void draw();

  Services services_;
  Collaborators collaborators_;
  std::function<void(std::vector<std::string>)> runningChanged_;
  std::vector<std::string> runningNames_;
  ContainerFindings findings_;
  std::optional<ContainerBlock> block_;
  ContainersPage page_;
  bool isOpen_ = false;
};

}  // namespace ostrel
