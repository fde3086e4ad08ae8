#pragma once

#include <QObject>

#include <memory>

#include "Shells/Desktop/ShellPlugIn.hpp"

namespace ostrel {

/// The agent window as one of the Views plug-in, which is loaded when it first opens. Where that cannot be
/// loaded, the window counts as closed at once.
class DesktopAgentWindow final : public AgentWindow {
 public:
  using LoadViews = std::function<std::expected<const ViewsPlugIn*, std::string>()>;

  DesktopAgentWindow(LoadViews loadViews, Log& log) : loadViews_(std::move(loadViews)), log_(log) {}

  void onEvents(AgentWindowEvents events) override { events_ = std::move(events); }
  void open(const AgentWindowContent& content, const WindowSize& size) override;
  void update(const AgentWindowContent& content) override;
  void close() override;

  void setTheme(const DesktopTheme& theme);

 private:
  AgentWindowView* view(const AgentWindowContent& content);

  LoadViews loadViews_;
  Log& log_;
  AgentWindowEvents events_;
  std::unique_ptr<AgentWindowView> view_;
  bool hasFailed_ = false;
  DesktopTheme theme_;
  QObject later_;  ///< the context of posted calls, which end with it
};

}  // namespace ostrel
