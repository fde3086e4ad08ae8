// The pages of the agent window that need no report.

#include "OstrelAgent/Text/Copy.hpp"
#include "OstrelAgent/Window/WindowPages.hpp"

namespace ostrel::windowpages {

namespace {

using Content = AgentWindowContent;

}  // namespace

Content::Notifications notifications(const ContainersPage& containers) {
  Content::Notifications page;
  page.authorization = containers.authorizationText();
  page.authorizationButton = containers.authorizationButton();
  const auto listed = containers.listedForNotifications();
  for (const auto& runtime : ContainerRuntime::table) {
    const std::string name(runtime.name);
    if (listed.contains(name)) page.runtimes.push_back({name, containers.notify.contains(name)});
  }
  page.master = {.label = std::string(Copy::notificationsMaster.text()),
                 .isOn = !containers.notify.empty(),
                 .isEnabled = !page.runtimes.empty() || !containers.notify.empty()};
  page.lede = Copy::notificationsLede.text();
  if (!page.runtimes.empty()) page.caption = Copy::notificationsRuntimes.text();
  return page;
}

Content::Help help(const AgentWindowInputs& inputs) {
  const auto& model = inputs.model;
  Content::Help page;
  page.lede = Copy::helpLede.text();
  for (const auto action : {PanelAction::copyDiagnostics, PanelAction::sendDiagnostics}) {
    if (inputs.available.contains(action)) page.buttons.push_back(PanelButton::of(action).during(model));
  }
  if (model.diagnosticsNotice) page.notices.push_back(RowState::info(*model.diagnosticsNotice));
  if (model.sendDiagnosticsError) page.notices.push_back(RowState::bad(*model.sendDiagnosticsError));
  if (model.diagnosticsSentAt) {
    page.notices.push_back(
        RowState::ok(Copy::noticeDiagnosticsSent.with(inputs.times.clockTime(*model.diagnosticsSentAt))));
  }
  return page;
}

}  // namespace ostrel::windowpages
