#include "Shells/Desktop/Views/Panel/PanelWindow.hpp"

#include <QGuiApplication>
#include <cmath>

#include "Shells/Desktop/Views/Common/WindowManager.hpp"

namespace ostrel {

namespace {

/// Every pixel that a rectangle with round corners touches.
QRegion roundRegion(QSize size, int cornerRadius) {
  QRegion region(0, 0, size.width(), size.height());
  const int rows = std::min(cornerRadius, size.height() / 2);
  for (int row = 0; row < rows; ++row) {
    const double rise = cornerRadius - (row + 1);
    const int gap = static_cast<int>(cornerRadius - std::sqrt(cornerRadius * cornerRadius - rise * rise));
    for (const int y : {row, size.height() - 1 - row}) {
      region -= QRect(0, y, gap, 1);
      region -= QRect(size.width() - gap, y, gap, 1);
    }
  }
  return region;
}

}  // namespace

std::expected<std::unique_ptr<PanelView>, std::string> PanelWindow::make(Log& log, PanelViewEvents events) {
  Scene::chooseRenderer();
  std::unique_ptr<PanelWindow> panel(new PanelWindow(log, std::move(events)));
  auto filled = panel->scene_.fill(panel->window_, PanelState::screen, PanelState::property, panel->state_);
  if (!filled) return std::unexpected(filled.error());
  QObject::connect(&panel->scene_.root(), &QQuickItem::heightChanged, &panel->state_,
                   [view = panel.get()] { view->place(); });
  return panel;
}

PanelWindow::PanelWindow(Log& log, PanelViewEvents events) : events_(std::move(events)), scene_(log) {
  window_.setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
  window_.setColor(Qt::transparent);
  QObject::connect(&state_, &PanelState::pressed, &state_, [this](const PanelButton& button) {
    if (events_.pressed) events_.pressed(button);
  });
  QObject::connect(&state_, &PanelState::dismissed, &state_, [this] { close(); });
  QObject::connect(&state_, &PanelState::folded, &state_, [this] { scene_.layOut(); });
  QObject::connect(&window_, &QWindow::activeChanged, &state_, [this] { activityChanged(); });
}

void PanelWindow::open(const PanelContent& content, const PanelAnchor& anchor, const DesktopTheme& theme) {
  anchor_ = anchor;
  show(content);
  setTheme(theme);
  emit state_.opened(!theme.reducesMotion);
  scene_.layOut();
  place();
  keepOutOfTaskbar(window_);
  window_.show();
  window_.requestActivate();
}

void PanelWindow::update(const PanelContent& content) {
  if (isShown() && show(content)) scene_.layOut();
}

void PanelWindow::setTheme(const DesktopTheme& theme) {
  scene_.setTheme(theme);
  // Without a compositor the half-covered pixels of the round corners would be mixed with black.
  window_.setColor(blendsWindows() ? Qt::transparent : scene_.root().property("edgeColor").value<QColor>());
  if (isShown()) scene_.layOut();
}

void PanelWindow::close() {
  window_.hide();
  scene_.tidy();
}

/// False when the content is unchanged.
bool PanelWindow::show(const PanelContent& content) {
  // Assistive tools read the title when the window opens.
  window_.setTitle(textOf(content.header.word));
  return state_.show(content);
}

void PanelWindow::activityChanged() {
  if (window_.isActive() || !isShown()) return;
  close();
  if (events_.lostFocus) events_.lostFocus();
}

void PanelWindow::place() {
  const auto size = scene_.size();
  const auto corner = panelPlace(anchor_, size.width(), size.height());
  window_.setGeometry(corner.x, corner.y, size.width(), size.height());
  // Only X11 desktops may lack a compositor; elsewhere the corners are transparent.
  if (QGuiApplication::platformName() == QLatin1String("xcb")) {
    window_.setMask(roundRegion(size, scene_.root().property("cornerRadius").toInt()));
  }
}

}  // namespace ostrel
