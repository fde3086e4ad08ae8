#include "OstrelAgent/Window/AgentWindowContent.hpp"

#include <algorithm>
#include <array>

#include "OstrelAgent/Panel/StatusPanel.hpp"
#include "OstrelAgent/Text/AsciiCase.hpp"
#include "OstrelAgent/Text/Copy.hpp"
#include "OstrelAgent/Window/WindowPages.hpp"

namespace ostrel {

namespace {

struct PageRow {
  AgentPage page;
  std::string_view name;
  const Message& title;
};

constexpr std::array pages = {
    PageRow{AgentPage::ecosystems, "ecosystems", Copy::windowPageEcosystems},
    PageRow{AgentPage::containers, "containers", Copy::windowPageContainers},
    PageRow{AgentPage::egressLock, "egressLock", Copy::featureEgressLock},
    PageRow{AgentPage::identity, "identity", Copy::rowIdentity},
    PageRow{AgentPage::health, "health", Copy::rowHealth},
    PageRow{AgentPage::notifications, "notifications", Copy::windowPageNotifications},
    PageRow{AgentPage::help, "help", Copy::windowPageHelp},
};

consteval bool followsDeclaration() {
  for (std::size_t i = 0; i < pages.size(); ++i) {
    if (pages[i].page != static_cast<AgentPage>(i)) return false;
  }
  return pages.back().page == AgentPage::help;
}
static_assert(followsDeclaration(), "one row for each page, in the order of the enumeration");

const PageRow& rowOf(AgentPage page) { return pages.at(static_cast<std::size_t>(page)); }

bool isGeneral(AgentPage page) { return page == AgentPage::notifications || page == AgentPage::help; }

/// The state of what a page of the device shows; the report is known.
RowState stateOf(AgentPage page, const StatusPanelModel& model) {
  const auto& snapshot = model.snap;
  switch (page) {
    case AgentPage::containers:
      return containersState(snapshot, model.runningContainerRuntimes);
    case AgentPage::egressLock:
      return egressLockState(snapshot);
    case AgentPage::identity:
      return credentialState(snapshot);
    case AgentPage::health:
      return healthRollup(components(snapshot));
    default:
      return guardRollup(snapshot);
  }
}

AgentWindowContent::Sidebar sidebarOf(const StatusPanelModel& model, const PanelContent& panel) {
  AgentWindowContent::Sidebar sidebar{.header = panel.header, .enrolment = {}, .sections = {}};
  const bool hasReport = !panel.statusError;
  const bool isEnrolled = model.snap.enrolled || model.snap.tokenPresent;
  if (hasReport) {
    sidebar.enrolment = (isEnrolled ? Copy::windowDeviceEnrolled : Copy::windowDeviceNotEnrolled).text();
  }
  sidebar.sections = {{std::string(Copy::windowSectionDevice.text()), {}},
                      {std::string(Copy::windowSectionGeneral.text()), {}}};
  for (const auto& row : pages) {
    AgentWindowContent::SidebarItem item{row.page, std::string(row.title.text()), std::nullopt};
    if (hasReport && !isGeneral(row.page)) item.state = stateOf(row.page, model);
    sidebar.sections[isGeneral(row.page) ? 1 : 0].items.push_back(std::move(item));
  }
  return sidebar;
}

AgentWindowContent::Body bodyOf(AgentPage page, const AgentWindowInputs& inputs, const PanelContent& panel) {
  if (page == AgentPage::containers) return inputs.containers.content();
  if (page == AgentPage::notifications) return windowpages::notifications(inputs.containers);
  if (page == AgentPage::help) return windowpages::help(inputs);
  if (panel.statusError) return {};
  if (page == AgentPage::egressLock) return windowpages::egressLock(inputs, panel);
  if (page == AgentPage::identity) return windowpages::identity(inputs, panel);
  if (page == AgentPage::health) return windowpages::health(inputs, panel);
  return windowpages::ecosystems(inputs, panel);
}

}  // namespace

std::string_view nameOf(AgentPage page) { return rowOf(page).name; }

std::optional<AgentPage> agentPageNamed(std::string_view name) {
  const auto* row = std::ranges::find_if(pages, [name](const PageRow& each) {
    return each.name.size() == name.size() && containsIgnoringCase(each.name, name);
  });
  return row == pages.end() ? std::nullopt : std::optional(row->page);
}

AgentWindowContent agentWindowContent(AgentPage page, const AgentWindowInputs& inputs) {
  const auto panel = panelContent(inputs.model, inputs.now, inputs.times, inputs.available);
  AgentWindowContent content;
  content.direction = panel.direction;
  content.sidebar = sidebarOf(inputs.model, panel);
  content.page = page;
  content.title = rowOf(page).title.text();
  if (!isGeneral(page)) content.statusError = panel.statusError;
  content.body = bodyOf(page, inputs, panel);
  return content;
}

}  // namespace ostrel
