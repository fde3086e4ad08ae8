// The pages of the agent window that need no report.

#include <algorithm>

#include "OstrelAgent/Text/Copy.hpp"
#include "OstrelAgent/Window/WindowPages.hpp"

namespace ostrel::windowpages {

namespace {

using Content = AgentWindowContent;

std::string_view sentenceOf(NotificationAuthorization authorization) {
  switch (authorization) {
    case NotificationAuthorization::notDetermined:
      return Copy::notificationsNotDetermined.text();
    case NotificationAuthorization::denied:
      return Copy::notificationsDenied.text();
    case NotificationAuthorization::authorized:
      break;
  }
  return Copy::notificationsAuthorized.text();
}

bool isListed(const ContainerTrustReading::Row& row, const ContainersPage& page) {
  return row.installed || row.running || row.blocked || page.notify.contains(std::string(row.runtime.name));
}

}  // namespace

Content::Notifications notifications(const ContainersPage& containers) {
  Content::Notifications page;
  if (const auto& answer = containers.notificationAuthorization) page.authorization = sentenceOf(*answer);
  for (const auto& runtime : ContainerRuntime::table) {
    const auto row = std::ranges::find(containers.reading.rows, runtime.name,
                                       [](const auto& each) { return each.runtime.name; });
    const std::string name(runtime.name);
    if (isListed(*row, containers)) page.runtimes.push_back({name, containers.notify.contains(name)});
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
  for (const auto& notice : {model.diagnosticsNotice, model.sendDiagnosticsError}) {
    if (notice) page.notices.push_back(*notice);
  }
  if (model.diagnosticsSentAt) {
    page.notices.push_back(
        Copy::noticeDiagnosticsSent.with(inputs.times.clockTime(*model.diagnosticsSentAt)));
  }
  return page;
}

}  // namespace ostrel::windowpages
