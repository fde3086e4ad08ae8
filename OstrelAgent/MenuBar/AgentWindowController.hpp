#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

#include "OstrelAgent/Containers/ContainersPageController.hpp"
#include "OstrelAgent/MenuBar/PanelPresenter.hpp"
#include "OstrelAgent/Panel/StatusPanelActions.hpp"
#include "OstrelAgent/Window/AgentWindowContent.hpp"
#include "OstrelAgent/Window/AgentWindowSettings.hpp"
#include "Platform/Clock.hpp"
#include "Platform/FileManager.hpp"
#include "Platform/Log.hpp"
#include "Platform/MainQueue.hpp"
#include "Platform/Shell.hpp"
#include "Platform/UserNotifications.hpp"
#include "Platform/Workspace.hpp"

namespace ostrel {

/// Opens the agent window, keeps it current and does what its user asks for. While the window is open the
/// program is a regular application. Main thread; callbacks hold it weakly.
class AgentWindowController : public std::enable_shared_from_this<AgentWindowController> {
 public:
  /// How long after the last change of page and size they are stored.
  static constexpr std::chrono::milliseconds saveDelay{1000};

  struct Services {
    MainQueue& mainQueue;
    Clock& clock;
    UserDefaults& userDefaults;
    Log& log;
    Workspace& workspace;
    Shell& shell;
    AgentWindow& window;
    FileManager& fileManager;
    UserNotifications& notifications;
  };

  struct Collaborators {
    std::shared_ptr<PanelPresenter> presenter;
    std::shared_ptr<ContainersPageController> containers;
  };

  AgentWindowController(Services services, Collaborators collaborators);

  /// Sets the actions of the buttons. Call once, before the window opens.
  void start(StatusPanelActions actions);

  /// Opens the window in place of the panel, at a page or at the one shown last; an open one comes to the
  /// front.
  void open(std::optional<AgentPage> page);

  /// Draws the open window at the current time.
  void draw();

  /// Asks for the permission to notify, unless that was decided before, and reads the decision.
  void requestAuthorization();

 private:
  AgentWindowEvents events();
  AgentWindowModel& model();
  AgentWindowContent content();
  void turnTo(AgentPage page);
  void closed();
  void perform(PageAction action);
  void openNotificationSettings();
  void revealBundle();
  void activated();
  void resized(const WindowSize& size);
  void saveLater();
  void save();

  Services services_;
  Collaborators collaborators_;
  AgentWindowSettings settings_;
  StatusPanelActions actions_;
  std::optional<AgentWindowModel> model_;  ///< nullopt until `model` is first asked for
  AgentWindowModel stored_;                ///< what the settings hold
  ScheduledWork saving_;
  bool isOpen_ = false;
};

}  // namespace ostrel
