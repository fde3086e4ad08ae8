#include "Shells/Console/ConsoleAgentWindow.hpp"

#include <utility>

#include "OstrelAgent/Text/Overloaded.hpp"
#include "Shells/Console/AgentWindowText.hpp"
#include "Shells/Console/ContainersText.hpp"

namespace ostrel {

void ConsoleAgentWindow::open(const AgentWindowContent& content, const WindowSize& /*size*/) {
  form_ = std::exchange(wanted_, Form::window);
  isInsideDue_ = form_ == Form::containersList;
  printed_.clear();
  update(content);
}

void ConsoleAgentWindow::update(const AgentWindowContent& content) {
  shown_ = content;
  auto text = this->text();
  if (text == printed_) return;
  printed_ = std::move(text);
  if (!isQuiet_) print();
}

/// Writes the content in the asked form and takes its buttons.
std::string ConsoleAgentWindow::text() {
  buttons_.clear();
  const auto* page = std::get_if<ContainersPageContent>(&shown_->body);
  if (page != nullptr) selected_ = page->detail ? page->detail->name : "";
  if (page != nullptr && form_ == Form::containersList) return containersListText(*page);
  if (page != nullptr && form_ == Form::containerDetail) return containerDetailText(*page);
  auto [text, buttons] = agentWindowText(*shown_, ButtonMarks::numbered);
  buttons_ = std::move(buttons);
  while (text.ends_with("\n\n")) text.pop_back();
  return std::move(text);
}

/// Prints the text; what is done inside containers does not change, so that follows once.
void ConsoleAgentWindow::print() {
  streams_.writeOutput("\n" + printed_ + "\n");
  const auto* page = std::get_if<ContainersPageContent>(&shown_->body);
  if (page == nullptr || !page->checking.empty() || !std::exchange(isInsideDue_, false)) return;
  streams_.writeOutput(containersInsideText(*page) + "\n");
}

void ConsoleAgentWindow::close() {
  if (!std::exchange(shown_, std::nullopt)) return;
  if (events_.closed) events_.closed();
}

void ConsoleAgentWindow::openPage(std::string_view name) {
  if (name.empty()) return open(Form::window, PanelButton::of(PanelAction::openAgentWindow));
  if (const auto page = agentPageNamed(name)) return open(Form::window, PanelButton::opening(*page));
  streams_.writeOutput("there is no page \"" + std::string(name) +
                       "\"; window takes ecosystems, containers, egressLock, identity, health, notifications "
                       "or help\n");
}

void ConsoleAgentWindow::openContainers(std::string_view runtime) {
  std::optional<std::string> name;
  if (!runtime.empty() && !(name = runtimeNamed(runtime))) return;
  if (name) {
    const Quiet quiet(isQuiet_);
    events_.runtimeSelected(*name);
  }
  open(name ? Form::containerDetail : Form::containersList, PanelButton::opening(AgentPage::containers));
}

/// Presses the button as an entry of the status item's menu. An open window turns to the page and comes to
/// the front; both are printed as one.
void ConsoleAgentWindow::open(Form form, const PanelButton& button) {
  wanted_ = form;
  {
    const Quiet quiet(isQuiet_);
    statusItem_.press(button);
  }
  wanted_ = Form::window;
  if (shown_) print();
}

ConsolePress ConsoleAgentWindow::press(std::size_t number) {
  if (!shown_) return ConsolePress::nothingOpen;
  if (number < 1 || number > buttons_.size()) return ConsolePress::noSuchButton;
  // What the press does may print the window with other buttons.
  const auto button = buttons_[number - 1];
  if (!button.isEnabled) return ConsolePress::disabled;
  perform(button);
  return ConsolePress::done;
}

void ConsoleAgentWindow::perform(const WindowButton& button) {
  std::visit(Overloaded{
                 [this](const PanelButton& pressed) { events_.pressed(pressed); },
                 [this](PageAction action) { events_.pageActionPressed(action); },
                 [this](ContainersCopy what) { (void)events_.copyPressed(what); },
                 [this](const NotifySwitch& each) { (void)events_.notifySwitched(each.runtime, each.isOn); },
                 [this](AllNotifySwitch all) { (void)events_.allNotifySwitched(all.isOn); },
             },
             button.does);
}

}  // namespace ostrel
