#include "OstrelAgent/MenuBar/AgentWindowController.hpp"

#include <utility>

#include "OstrelAgent/Containers/TrustBundle.hpp"
#include "OstrelAgent/Notifications/RedNotifier.hpp"
#include "OstrelAgent/Text/EditMenu.hpp"

namespace ostrel {

namespace {

constexpr const char* notificationSettings =
    "x-apple.systempreferences:com.apple.Notifications-Settings.extension";

/// True for the pages that show the state of the containers page.
bool showsContainers(AgentPage page) {
  return page == AgentPage::containers || page == AgentPage::notifications;
}

}  // namespace

AgentWindowController::AgentWindowController(Services services, Collaborators collaborators)
    : services_(services),
      collaborators_(std::move(collaborators)),
      settings_(services.userDefaults, services.log) {}

void AgentWindowController::start(StatusPanelActions actions) {
  actions_ = std::move(actions);
  services_.window.onEvents(events());
}

AgentWindowEvents AgentWindowController::events() {
  const auto weakly = [weak = weak_from_this()](auto action) {
    return [weak, action](const auto&... arguments) {
      using Result = decltype(action(*weak.lock(), arguments...));
      const auto self = weak.lock();
      return self ? action(*self, arguments...) : Result();
    };
  };
  const auto ofContainers = [weakly](auto method) {
    return weakly([method](AgentWindowController& self, const auto&... arguments) {
      return ((*self.collaborators_.containers).*method)(arguments...);
    });
  };
  using Containers = ContainersPageController;
  return {
      .pageChosen = weakly([](auto& self, AgentPage page) {
        self.turnTo(page);
        self.draw();
      }),
      .pressed = weakly([](auto& self, const PanelButton& button) { self.actions_.perform(button); }),
      .pageActionPressed = weakly([](auto& self, PageAction action) { self.perform(action); }),
      .runtimeSelected = ofContainers(&Containers::select),
      .snippetChosen = ofContainers(&Containers::choose),
      .copyPressed = ofContainers(&Containers::copy),
      .notifySwitched = ofContainers(&Containers::setNotify),
      .allNotifySwitched = ofContainers(&Containers::setAllNotify),
      .activated = weakly([](auto& self) { self.activated(); }),
      .resized = weakly([](auto& self, const WindowSize& size) { self.resized(size); }),
      .closed = weakly([](auto& self) { self.closed(); }),
  };
}

void AgentWindowController::open(std::optional<AgentPage> page) {
  turnTo(page.value_or(model().page));
  collaborators_.presenter->close();
  services_.shell.setActivationPolicy(ActivationPolicy::regular);
  services_.shell.setMainMenu(mainMenuForEditing());
  services_.shell.activate();
  isOpen_ = true;
  services_.window.open(content(), model().size);
}

void AgentWindowController::draw() {
  if (isOpen_) services_.window.update(content());
}

/// Read from the settings at the first use.
AgentWindowModel& AgentWindowController::model() {
  if (!model_) model_ = stored_ = settings_.read();
  return *model_;
}

AgentWindowContent AgentWindowController::content() {
  auto& presenter = *collaborators_.presenter;
  return agentWindowContent(model().page, {.model = presenter.model(),
                                           .containers = collaborators_.containers->page(),
                                           .now = services_.clock.now(),
                                           .times = presenter.times(),
                                           .available = actions_.available()});
}

/// Shows and remembers a page. The container runtimes are read again for the pages that list them.
void AgentWindowController::turnTo(AgentPage page) {
  const bool isOther = page != model().page;
  if (isOpen_ && !isOther) return;
  model().page = page;
  if (isOther) saveLater();
  collaborators_.containers->setShown(showsContainers(page));
}

void AgentWindowController::closed() {
  if (!std::exchange(isOpen_, false)) return;
  save();
  services_.shell.setActivationPolicy(ActivationPolicy::accessory);
  services_.shell.setMainMenu({});
  collaborators_.containers->setShown(false);
}

void AgentWindowController::perform(PageAction action) {
  switch (action) {
    case PageAction::allowNotifications:
      return requestAuthorization();
    case PageAction::openNotificationSettings:
      return openNotificationSettings();
    case PageAction::revealBundle:
      return revealBundle();
  }
}

void AgentWindowController::requestAuthorization() {
  RedNotifier::requestAuthorizationIfNeeded(services_.notifications, services_.log,
                                            [weak = std::weak_ptr(collaborators_.containers)] {
                                              if (const auto containers = weak.lock())
                                                containers->readAuthorization();
                                            });
}

void AgentWindowController::openNotificationSettings() {
  if (services_.workspace.openUrl(notificationSettings)) return;
  services_.log.line("ostrel: could not open the notification settings");
}

/// Where no file manager shows the bundle, its path is copied instead.
void AgentWindowController::revealBundle() {
  services_.fileManager.reveal(std::string(trustbundle::file), [weak = weak_from_this()](bool isShown) {
    const auto self = weak.lock();
    const bool isAwaited = self && self->isOpen_ && self->model_->page == AgentPage::containers;
    if (isAwaited && !isShown) (void)self->collaborators_.containers->copy(ContainersCopy::bundlePath);
  });
}

void AgentWindowController::activated() {
  if (isOpen_ && showsContainers(model().page)) collaborators_.containers->readAuthorization();
}

void AgentWindowController::resized(const WindowSize& size) {
  model().size = atLeastSmallest(size);
  saveLater();
}

/// A user who passes through pages or sizes does not wait for the disk at each.
void AgentWindowController::saveLater() {
  saving_ = services_.mainQueue.after(saveDelay, [weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->save();
  });
}

void AgentWindowController::save() {
  saving_.reset();
  const auto [page, size] = std::exchange(stored_, model());
  if (page != stored_.page) settings_.storePage(stored_.page);
  if (size != stored_.size) settings_.storeSize(stored_.size);
}

}  // namespace ostrel
