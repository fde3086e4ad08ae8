#pragma once

#include <functional>

#include "OstrelAgent/Panel/PanelContent.hpp"
#include "OstrelAgent/Panel/StatusPanelActions.hpp"
#include "OstrelAgent/Panel/StatusPanelModel.hpp"
#include "OstrelAgent/Text/TimeTexts.hpp"
#include "Platform/Clock.hpp"
#include "Platform/Screens.hpp"
#include "Platform/Shell.hpp"
#include "Platform/TimeFormat.hpp"

namespace ostrel {

/// Owns the panel's model with the latest snapshot, and draws the panel. Main thread.
class PanelPresenter {
 public:
  static constexpr double popoverChromeAllowance = 40.0;

  struct Services {
    Clock& clock;
    TimeFormat& timeFormat;
    Shell& shell;
    Screens& screens;
  };

  using HealthListener = std::function<void(const StatusReport::Health&)>;

  explicit PanelPresenter(Services services);

  /// Sets the panel's actions. `healthApplied` is called after each `applyHealth`, `drawn` after each `draw`,
  /// also while the panel is closed. Call once, before the panel opens.
  void start(
      StatusPanelActions actions, HealthListener healthApplied, std::function<void()> drawn = [] {});

  /// The model; call `draw` after a change.
  StatusPanelModel& model() { return model_; }
  const Snapshot& latest() const { return model_.snap; }
  const TimeTexts& times() const { return times_; }

  /// Replaces the snapshot by a newer one, which may end a running update.
  void publish(Snapshot snapshot);

  /// Applies a check-in's health block to the latest snapshot.
  void applyHealth(const StatusReport::Health& health);

  bool isShown() const { return services_.screens.isPanelShown(); }
  void open();
  void close() { services_.screens.closePanel(); }

  /// Draws the open panel at the current time.
  void draw();

 private:
  PanelContent content() const;

  Services services_;
  TimeTexts times_;
  StatusPanelModel model_;
  StatusPanelActions actions_;
  HealthListener healthApplied_;
  std::function<void()> drawn_;
};

}  // namespace ostrel
