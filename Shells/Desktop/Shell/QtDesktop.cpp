#include "Shells/Desktop/Shell/QtDesktop.hpp"

#include <QBuffer>
#include <QClipboard>
#include <QGuiApplication>
#include <utility>

#include "Shells/Desktop/Shell/DesktopAgentWindow.hpp"
#include "Shells/Desktop/Shell/DesktopAlerts.hpp"
#include "Shells/Desktop/Shell/DesktopBus.hpp"
#include "Shells/Desktop/Shell/DesktopFileManager.hpp"
#include "Shells/Desktop/Shell/DesktopNotifications.hpp"
#include "Shells/Desktop/Shell/DesktopOnboardingWindow.hpp"
#include "Shells/Desktop/Shell/DesktopScreens.hpp"
#include "Shells/Desktop/Shell/DesktopStatusItem.hpp"
#include "Shells/Desktop/Shell/DesktopWake.hpp"
#include "Shells/Desktop/Shell/IconImage.hpp"
#include "Shells/Desktop/Shell/QtShell.hpp"

namespace ostrel {

namespace {

constexpr const char* platformVariable = "QT_QPA_PLATFORM";
constexpr const char* offscreen = "offscreen";

Log* toolkitLog = nullptr;
bool logsToolkitWarnings = true;

/// Logs the toolkit's errors and, if wanted, its warnings in the system log, and drops the rest.
void logOfToolkit(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text) {
  const bool isError = type == QtCriticalMsg || type == QtFatalMsg;
  if (isError || (type == QtWarningMsg && logsToolkitWarnings))
    toolkitLog->line("ostrel: " + text.toStdString());
}

/// Without DISPLAY the platform "xcb" is not tried, since its failure to connect would be logged.
QByteArray platformsOfDisplay() { return qEnvironmentVariableIsEmpty("DISPLAY") ? "wayland" : "xcb;wayland"; }

/// The toolkit's application object. It tries the platform that QT_QPA_PLATFORM names, or else those of
/// the display, and last "offscreen": the toolkit would abort the process where none works.
class Application {
 public:
  explicit Application(Log& log, bool logsWarnings = true) {
    toolkitLog = &log;
    logsToolkitWarnings = logsWarnings;
    qInstallMessageHandler(logOfToolkit);
    const bool isSet = qEnvironmentVariableIsSet(platformVariable);
    const auto chosen = qgetenv(platformVariable);
    qputenv(platformVariable, (chosen.isEmpty() ? platformsOfDisplay() : chosen) + ";offscreen");
    QGuiApplication::setQuitOnLastWindowClosed(false);
    QGuiApplication::setApplicationName(QStringLiteral("OstrelAgent"));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Ostrel Agent"));
    application_.emplace(count_, arguments_);
    // Saves milliseconds: with "xcb" all plug-ins are loaded by now, and the toolkit would search for those
    // of image formats. Other platforms load more plug-ins with the first window.
    if (QGuiApplication::platformName() == QLatin1String("xcb")) QCoreApplication::setLibraryPaths({});
    // Child processes must see the variable as the user has set it.
    if (isSet) {
      qputenv(platformVariable, chosen);
    } else {
      qunsetenv(platformVariable);
    }
    hasScreen_ = chosen.contains(offscreen) || QGuiApplication::platformName() != QLatin1String(offscreen);
  }
  Application(const Application&) = delete;
  Application& operator=(const Application&) = delete;
  ~Application() {
    application_.reset();
    qInstallMessageHandler(nullptr);
  }

  bool hasScreen() const { return hasScreen_; }

 private:
  int count_ = 1;
  char name_[12] = "OstrelAgent";
  char* arguments_[2] = {name_, nullptr};
  std::optional<QGuiApplication> application_;
  bool hasScreen_ = false;
};

/// The desktop's clipboard.
class QtPasteboard final : public Pasteboard {
 public:
  [[nodiscard]] bool setText(std::string_view text) override {
    auto& clipboard = *QGuiApplication::clipboard();
    clipboard.setText(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
    // The platform "offscreen" knows no owner.
    return clipboard.ownsClipboard() || QGuiApplication::platformName() == QLatin1String(offscreen);
  }
};

class QtDesktop final : public Desktop {
 public:
  explicit QtDesktop(std::unique_ptr<Application> application, DesktopServices services)
      : application_(std::move(application)), services_(std::move(services)) {
    screens_.setTheme(themeWatcher_.theme());
    agentWindow_.setTheme(themeWatcher_.theme());
    onboardingWindow_.setTheme(themeWatcher_.theme());
    alerts_.setTheme(themeWatcher_.theme());
  }

  Shell& shell() override { return shell_; }
  StatusItem& statusItem() override { return statusItem_; }
  Screens& screens() override { return screens_; }
  AgentWindow& agentWindow() override { return agentWindow_; }
  OnboardingWindow& onboardingWindow() override { return onboardingWindow_; }
  Alerts& alerts() override { return alerts_; }
  Pasteboard& pasteboard() override { return pasteboard_; }
  FileManager& fileManager() override { return fileManager_; }
  UserNotifications& notifications() override { return notifications_; }
  SystemWake& systemWake() override { return wake_; }

 private:
  void changeTheme() {
    const auto theme = themeWatcher_.theme();
    screens_.setTheme(theme);
    agentWindow_.setTheme(theme);
    onboardingWindow_.setTheme(theme);
    alerts_.setTheme(theme);
    const bool hasOther = std::exchange(appearance_, theme.appearance) != theme.appearance;
    if (hasOther && statusItem_.events().appearanceChanged) statusItem_.events().appearanceChanged();
  }

  [[nodiscard]] std::expected<const ViewsPlugIn*, std::string> loadViews() {
    // With its first view the toolkit asks the session bus for screen readers, and would wait for a silent
    // bus.
    bus_.preventToolkitBusConnection();
    return services_.loadViews();
  }

  void click(QPoint place) {
    if (screens_.takeClosingClick() || !statusItem_.events().clicked) return;
    screens_.setClick(place);
    statusItem_.events().clicked();
  }

  std::unique_ptr<Application> application_;
  DesktopServices services_;
  DesktopBus bus_{sessionBusAddress(), services_.log};
  ThemeWatcher themeWatcher_{bus_, [this] { changeTheme(); }};
  Appearance appearance_ = themeWatcher_.theme().appearance;
  // The panel closes for an alert, and does not open while one is open.
  DesktopAlerts alerts_{[this] { return loadViews(); }, services_.log, [this] { screens_.closePanel(); }};
  DesktopScreens screens_{[this] { return loadViews(); }, services_.log,
                          [this] { return alerts_.activate(); }};
  DesktopStatusItem statusItem_{bus_, services_.resources, themeWatcher_, services_.log,
                                [this](QPoint place) { click(place); }};
  DesktopAgentWindow agentWindow_{[this] { return loadViews(); }, services_.log};
  DesktopOnboardingWindow onboardingWindow_{[this] { return loadViews(); }, services_.log};
  QtPasteboard pasteboard_;
  DesktopFileManager fileManager_{bus_, services_.realPath};
  DesktopNotifications notifications_{bus_};
  DesktopWake wake_{bus_, systemBusAddress()};
  QtShell shell_{services_, [this] {
                   onboardingWindow_.activate();
                   alerts_.activate();
                 }};
};

std::string pngOf(const QImage& image) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  image.save(&buffer, "PNG");
  return bytes.toStdString();
}

class QtPictures final : public DesktopPictures {
 public:
  QtPictures(std::unique_ptr<Application> application, DesktopServices services)
      : application_(std::move(application)), services_(std::move(services)) {}

  std::expected<std::string, std::string> icon(const MenuBarIcon& icon, int scale) override {
    const auto* glyph = std::get_if<menubarpicture::Glyph>(&icon.picture);
    if (glyph == nullptr) return std::unexpected("the bundle has no glyph image");
    const auto image = loadGlyph(services_.resources, glyph->palette.glyphName(), scale);
    if (!image) return std::unexpected("the glyph image cannot be read");
    return pngOf(iconImage(*image, glyph->badge, glyph->palette));
  }

  std::expected<std::string, std::string> panel(const PanelContent& content,
                                                const DesktopTheme& theme) override {
    const auto views = services_.loadViews();
    if (!views) return std::unexpected(views.error());
    return (*views)->drawPanel(content, theme, services_.log);
  }

  std::expected<std::string, std::string> onboarding(const OnboardingContent& content,
                                                     const DesktopTheme& theme) override {
    const auto views = services_.loadViews();
    if (!views) return std::unexpected(views.error());
    return (*views)->drawOnboarding(content, theme, services_.log);
  }

  std::expected<std::string, std::string> alert(const Alert& alert, const DesktopTheme& theme) override {
    const auto views = services_.loadViews();
    if (!views) return std::unexpected(views.error());
    return (*views)->drawAlert(alert, theme, services_.log);
  }

  std::expected<std::string, std::string> agentWindow(const AgentWindowContent& content,
                                                      const WindowSize& size,
                                                      const DesktopTheme& theme) override {
    const auto views = services_.loadViews();
    if (!views) return std::unexpected(views.error());
    return (*views)->drawAgentWindow(content, size, theme, services_.log);
  }

 private:
  std::unique_ptr<Application> application_;
  DesktopServices services_;
};

}  // namespace

std::expected<std::unique_ptr<Desktop>, std::string> makeQtDesktop(DesktopServices services) {
  auto application = std::make_unique<Application>(services.log);
  if (!application->hasScreen()) return std::unexpected("the display cannot be opened");
  return std::make_unique<QtDesktop>(std::move(application), std::move(services));
}

std::unique_ptr<DesktopPictures> makeQtPictures(DesktopServices services, double scale) {
  qputenv(platformVariable, offscreen);
  qputenv("QT_SCALE_FACTOR", QByteArray::number(scale));
  return std::make_unique<QtPictures>(std::make_unique<Application>(services.log, false),
                                      std::move(services));
}

}  // namespace ostrel
