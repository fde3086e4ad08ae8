#include "OstrelAgent/MenuBar/MenuBarController.hpp"

#include <algorithm>
#include <thread>
#include <utility>

#include "OstrelAgent/Containers/ContainerBlock.hpp"
#include "OstrelAgent/MenuBar/DeviceManagementProbe.hpp"

namespace ostrel {

MenuBarController::MenuBarController(Services services, Collaborators collaborators,
                                     std::shared_ptr<RedNotifier> redNotifier)
    : services_(services),
      collaborators_(std::make_shared<const Collaborators>(std::move(collaborators))),
      redNotifier_(std::move(redNotifier)),
      statusRuns_(services.mainQueue),
      times_{.clockTime = [&format = services.timeFormat](Date date) { return format.clockTime(date); },
             .shortDate = [&format = services.timeFormat](Date date) { return format.shortDate(date); }},
      nudges_({services.mainQueue, services.clock, services.networkPath, services.systemWake},
              [this](const std::string& reason) { actions_->checkNow(reason); }),
      reactivation_({services.backgroundQueue, services.childProcesses, services.bundle},
                    collaborators_->records) {}

void MenuBarController::start() {
  const auto weak = weak_from_this();
  const auto press = [weak](const PanelButton& button) {
    if (const auto self = weak.lock()) self->actionCallbacks_.perform(button);
  };
  services_.statusItem.install({.clicked =
                                    [weak] {
                                      if (const auto self = weak.lock()) self->togglePanel();
                                    },
                                .appearanceChanged =
                                    [weak] {
                                      if (const auto self = weak.lock()) self->applyIcon(self->latest_);
                                    },
                                .menuPressed = press});
  fillPanelActions();
  services_.screens.onPanelButton(press);
  services_.statusItem.showMenu(statusItemMenu(actionCallbacks_.available()));
  model_.snap = latest_;
  redNotifier_->start();
  applyIcon(latest_);
  refresh();
  probeDeviceManagement();
  timer_ = services_.mainQueue.every(refreshPeriod, [weak] {
    if (const auto self = weak.lock()) self->refresh();
  });
  nudges_.start();
}

void MenuBarController::fillPanelActions() {
  const auto weakly = [weak = weak_from_this()](auto action) {
    return [weak, action] {
      if (const auto self = weak.lock()) action(*self);
    };
  };
  actions_ = std::make_shared<PanelActionRunner>(
      PanelActionRunner::Services{services_.mainQueue, services_.backgroundQueue, services_.clock,
                                  services_.bundle, services_.log, services_.shell, services_.pasteboard,
                                  services_.alerts},
      PanelActionRunner::Collaborators{collaborators_->helper, collaborators_->socket, collaborators_->trust,
                                       collaborators_->configurations},
      PanelActionRunner::Panel{.model = model_,
                               .draw = weakly([](MenuBarController& self) { self.draw(); }),
                               .refresh = weakly([](MenuBarController& self) { self.refresh(); }),
                               .applyHealth = [weak = weak_from_this()](const StatusReport::Health& health) {
                                 if (const auto self = weak.lock()) self->applyHealth(health);
                               }});
  actionCallbacks_ = actions_->callbacks();
  actionCallbacks_.openRepairFlow = collaborators_->openRepairFlow;
}

/// One refresh on its way through the background, on whatever threads the loads complete.
struct MenuBarController::Refresh : std::enable_shared_from_this<Refresh> {
  Refresh(MenuBarController& owner, StatusRunLimiter::Run begun)
      : controller(owner.weak_from_this()),
        run(std::move(begun)),
        services(owner.services_),
        collaborators(owner.collaborators_),
        known(owner.lastRead_),
        isEager(owner.isTimeNews()),
        generation(owner.healthGeneration_),
        mdmEnrolled(owner.mdmEnrolled_) {}

  void start() {
    thread = std::this_thread::get_id();
    sources.helper = runStatus(collaborators->helper, run.ending);
    services.networkPreferences.loadTransparentProxies([self = shared_from_this()](auto proxies) {
      self->sources.transparentProxies = std::move(proxies);
      self->services.networkPreferences.loadContentFilter([self](auto filter) {
        self->sources.contentFilter = std::move(filter);
        self->finish();
      });
    });
  }

  void finish() {
    const auto read = takeRead();
    report(read);
    const auto& filter = read->sources.contentFilter;
    const auto& snapshot = read->reading.snapshot;
    const NetworkExtensionAssertion assertion = {filter && filter->hasProvider, snapshot.egressLockEnabled,
                                                 snapshot.transparentProxy, mdmEnrolled};
    // Loads that complete at once are on a background thread still.
    if (std::this_thread::get_id() == thread)
      return collaborators->records.recordNetworkExtensionAssertion(assertion);
    services.backgroundQueue.run(QualityOfService::utility, [collaborators = collaborators, assertion] {
      collaborators->records.recordNetworkExtensionAssertion(assertion);
    });
  }

  /// What comes as it came last time tells the same.
  std::shared_ptr<const Read> takeRead() {
    if (known && sources == known->sources) return known;
    auto reading = statusReading(sources);
    return std::make_shared<const Read>(std::move(sources), std::move(reading));
  }

  /// Hands what was read to the controller.
  void report(const std::shared_ptr<const Read>& read) {
    // The main thread need not be woken for what it knows, unless a request waits for the run's place.
    const bool isNews = isEager || !known || read->reading != known->reading;
    const bool isWanted = isNews || run.ending.terminate.stop_requested();
    const auto hand = isWanted ? &MainQueue::post : &MainQueue::postLazily;
    (services.mainQueue.*hand)([controller = controller, number = run.number, generation = generation, read] {
      const auto alive = controller.lock();
      if (alive) alive->finishRefresh(number, generation, read);
    });
  }

  const std::weak_ptr<MenuBarController> controller;
  const StatusRunLimiter::Run run;
  const Services services;
  const std::shared_ptr<const Collaborators> collaborators;
  const std::shared_ptr<const Read> known;
  const bool isEager;
  const std::uint64_t generation;
  const std::optional<bool> mdmEnrolled;
  StatusInputs sources;
  std::thread::id thread;
};

void MenuBarController::refresh() {
  auto run = statusRuns_.begin();
  // Runs whose ends were posted lazily give their places back now.
  if (!run) return services_.mainQueue.post([] {});
  services_.statusQueue.run(QualityOfService::utility, [refresh = std::make_shared<Refresh>(
                                                            *this, std::move(*run))] { refresh->start(); });
}

/// True while the same reading, a little later, may change what the person sees or is told.
bool MenuBarController::isTimeNews() const {
  const bool isRed = ProtectionVerdict::of(latest_).kind == ProtectionVerdict::Case::notProtected;
  return services_.screens.isPanelShown() || isRed || model_.updateInFlight;
}

void MenuBarController::togglePanel() {
  auto& screens = services_.screens;
  if (screens.isPanelShown()) return screens.closePanel();
  refresh();
  if (const auto height = screens.visibleHeight()) {
    model_.panelMaxHeight = std::max(0.0, *height - popoverChromeAllowance);
  }
  services_.shell.activate();
  screens.openPanel(content());
}

/// Asked once a process; the answer joins the snapshots from the next refresh on.
void MenuBarController::probeDeviceManagement() {
  services_.backgroundQueue.run(
      QualityOfService::utility,
      [weak = weak_from_this(), &children = services_.childProcesses, &queue = services_.mainQueue] {
        const bool isEnrolled = isEnrolledInDeviceManagement(children);
        queue.post([weak, isEnrolled] {
          const auto self = weak.lock();
          if (!self) return;
          self->mdmEnrolled_ = isEnrolled;
          self->lastRead_ = nullptr;  // the next refresh is news, whatever it reads
        });
      });
}

void MenuBarController::finishRefresh(std::uint64_t run, std::uint64_t generation,
                                      std::shared_ptr<const Read> read) {
  const auto finish = statusRuns_.finish(run);
  if (finish.mayPublish) publish(generation, std::move(read));
  if (finish.startsWaiting) refresh();
}

void MenuBarController::publish(std::uint64_t generation, std::shared_ptr<const Read> read) {
  // The health of a check-in that ended while this was read is fresher.
  const bool isOvertaken = generation != healthGeneration_;
  const bool isKnown = lastRead_ && (read == lastRead_ || read->reading == lastRead_->reading);
  const bool isNews = !isKnown || isOvertaken;
  model_.hasReading = true;
  if (isNews) {
    latest_ = read->reading.snapshot;
    latest_.mdmEnrolled = mdmEnrolled_.value_or(false);
    if (isOvertaken && appliedHealth_) latest_.apply(*appliedHealth_);
    nudges_.nudgeOnNetworkExtensionChange(latest_);
    showLatest();
  }
  if (const auto& version = read->reading.reactivateVersion) reactivation_.driveReactivationOnce(*version);
  lastRead_ = isOvertaken ? nullptr : std::move(read);
  notify();
  actions_->clearUpdateInFlightIfSettled(latest_);
  draw();
}

void MenuBarController::applyHealth(const StatusReport::Health& health) {
  latest_.apply(health);
  appliedHealth_ = health;
  ++healthGeneration_;
  lastRead_ = nullptr;  // the next refresh is news, whatever it reads
  showLatest();
  notify();
  draw();
}

/// Tells the person what is worth a notification; whether one is due depends on the time, too.
void MenuBarController::notify() {
  const auto now = services_.clock.now();
  redNotifier_->observe(ProtectionVerdict::of(latest_), now);
  if (const auto block = ContainerBlock::read(latest_.runtimeTrust)) {
    redNotifier_->observeContainerBlocks(block->runtimes, collaborators_->containerTrust.notify(), now);
  }
}

void MenuBarController::showLatest() {
  applyIcon(latest_);
  model_.snap = latest_;
}

void MenuBarController::draw() {
  if (services_.screens.isPanelShown()) services_.screens.updatePanel(content());
}

/// Touches the status item only when its picture or text changes.
void MenuBarController::applyIcon(const Snapshot& snapshot) {
  const auto verdict = ProtectionVerdict::of(snapshot);
  auto& item = services_.statusItem;
  const auto palette = MenuBarPalette::matching(item.appearance());
  auto icon = MenuBarIcon::of(verdict, palette, item.hasImage(palette.glyphName()),
                              item.hasSymbol(VerdictSymbols::of(verdict).symbol));
  if (icon == shownIcon_) return;
  item.show(icon);
  shownIcon_ = std::move(icon);
}

PanelContent MenuBarController::content() const {
  return panelContent(model_, services_.clock.now(), times_, actionCallbacks_.available());
}

}  // namespace ostrel
