#include "Shells/Desktop/Views/Window/AgentViewWindow.hpp"

#include <utility>

#include "OstrelAgent/Window/AgentWindowModel.hpp"
#include "Shells/Desktop/Views/Common/WindowPlace.hpp"

namespace ostrel {

namespace {

constexpr QSize leastSize(static_cast<int>(AgentWindowModel::smallestSize.width),
                          static_cast<int>(AgentWindowModel::smallestSize.height));
constexpr auto title = "Ostrel Agent";

}  // namespace

std::expected<std::unique_ptr<AgentWindowView>, std::string> AgentViewWindow::make(
    Log& log, AgentWindowEvents events, const AgentWindowContent& content, const DesktopTheme& theme) {
  Scene::chooseRenderer();
  std::unique_ptr<AgentViewWindow> made(new AgentViewWindow(log, std::move(events)));
  // With the content, so that items are not made for an empty one first.
  made->state_.show(content);
  made->scene_.setTheme(theme);
  auto filled =
      made->scene_.fill(made->window_, AgentWindowState::screen, AgentWindowState::property, made->state_);
  if (!filled) return std::unexpected(filled.error());
  return made;
}

AgentViewWindow::AgentViewWindow(Log& log, AgentWindowEvents events)
    : events_(std::move(events)), scene_(log) {
  window_.setTitle(QLatin1String(title));
  connectState();
  QObject::connect(&window_, &QWindow::widthChanged, &state_, [this] { sizeChanged(); });
  QObject::connect(&window_, &QWindow::heightChanged, &state_, [this] { sizeChanged(); });
  QObject::connect(&window_, &QWindow::visibleChanged, &state_, [this] { visibilityChanged(); });
  QObject::connect(&window_, &QWindow::activeChanged, &state_, [this] {
    if (window_.isActive()) events_.activated();
  });
}

void AgentViewWindow::connectState() {
  const auto on = [this](auto signal, auto action) { QObject::connect(&state_, signal, &state_, action); };
  using State = AgentWindowState;
  on(&State::dismissed, [this] { close(); });
  on(&State::pageChosen, [this](AgentPage page) { events_.pageChosen(page); });
  on(&State::pressed, [this](const PanelButton& button) { events_.pressed(button); });
  on(&State::pageActionPressed, [this](PageAction action) { events_.pageActionPressed(action); });
  on(&State::copyPressed, [this](ContainersCopy what) { (void)events_.copyPressed(what); });
  on(&State::runtimeSelected, [this](const QString& name) { events_.runtimeSelected(name.toStdString()); });
  on(&State::snippetChosen,
     [this](int index) { events_.snippetChosen(containerSnippets.at(static_cast<std::size_t>(index))); });
  on(&State::notifySwitched, [this](const QString& name, bool isOn) {
    if (name.isEmpty()) return (void)events_.allNotifySwitched(isOn);
    (void)events_.notifySwitched(name.toStdString(), isOn);
  });
}

void AgentViewWindow::open(const AgentWindowContent& content, const WindowSize& size,
                           const DesktopTheme& theme) {
  setTheme(theme);
  state_.show(content);
  if (!window_.isVisible()) {
    const auto room = roomOf(window_);
    const auto wanted = QSizeF(size.width, size.height).toSize().boundedTo(room.size());
    window_.setMinimumSize(leastSize.boundedTo(room.size()));
    QRect place(QPoint(), wanted);
    place.moveCenter(room.center());
    window_.setGeometry(place);
    state_.setSize(wanted);
    emit state_.opened();
    scene_.layOut();
    isOpen_ = true;
  }
  // The toolkit's show would make a large window small again.
  if (!window_.isVisible()) window_.show();
  window_.setWindowStates(window_.windowStates() & ~Qt::WindowMinimized);
  window_.requestActivate();
}

void AgentViewWindow::update(const AgentWindowContent& content) {
  if (isOpen_) state_.show(content);
}

void AgentViewWindow::sizeChanged() {
  state_.setSize(window_.size());
  const bool isUsers = isOpen_ && window_.windowStates() == Qt::WindowNoState;
  if (isUsers) events_.resized({static_cast<double>(window_.width()), static_cast<double>(window_.height())});
}

void AgentViewWindow::visibilityChanged() {
  if (window_.isVisible() || !std::exchange(isOpen_, false)) return;
  scene_.tidy();
  events_.closed();
}

}  // namespace ostrel
