#include "Shells/Desktop/Views/Alert/AlertWindow.hpp"

#include <utility>

#include "Shells/Desktop/Views/Common/WindowPlace.hpp"
#include "Shells/Desktop/Views/Panel/PanelValues.hpp"

namespace ostrel {

std::expected<std::unique_ptr<AlertView>, std::string> AlertWindow::make(
    Log& log, std::function<void(std::size_t)> closed) {
  Scene::chooseRenderer();
  std::unique_ptr<AlertWindow> made(new AlertWindow(log, std::move(closed)));
  auto filled = made->scene_.fill(made->window_, AlertState::screen, AlertState::property, made->state_);
  if (!filled) return std::unexpected(filled.error());
  return made;
}

AlertWindow::AlertWindow(Log& log, std::function<void(std::size_t)> closed)
    : closed_(std::move(closed)), scene_(log) {
  window_.setFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                   Qt::WindowCloseButtonHint | Qt::WindowStaysOnTopHint);
  window_.setModality(Qt::ApplicationModal);
  QObject::connect(&state_, &AlertState::pressed, &state_, [this](int button) {
    answer_ = static_cast<std::size_t>(button);
    window_.close();
  });
  QObject::connect(&window_, &QWindow::visibleChanged, &state_, [this] { visibilityChanged(); });
}

void AlertWindow::open(const Alert& alert, const DesktopTheme& theme) {
  answer_ = alert.buttons.size() - 1;
  scene_.setTheme(theme);
  window_.setTitle(textOf(alert.title));
  state_.show(alert);
  fit();
  isOpen_ = true;
  window_.show();
  activate();
  emit state_.opened();
}

void AlertWindow::setTheme(const DesktopTheme& theme) {
  scene_.setTheme(theme);
  if (isOpen_) fit();
}

void AlertWindow::activate() {
  if (isOpen_) window_.requestActivate();
}

/// Gives the window the size of what it holds, as far as the screen has room for it.
void AlertWindow::fit() {
  state_.setRoom(roomOf(window_).size());
  scene_.layOut();
  placeWindow(window_, scene_.size());
}

void AlertWindow::visibilityChanged() {
  if (window_.isVisible() || !std::exchange(isOpen_, false)) return;
  scene_.tidy();
  closed_(answer_);
}

}  // namespace ostrel
