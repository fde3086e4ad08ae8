#include "SimulatedEndpoint/Settings/ApprovalQuestion.hpp"

#include <chrono>
#include <system_error>
#include <tuple>
#include <utility>

namespace ostrel::simulated {

namespace {

constexpr std::chrono::milliseconds lookPeriod{200};

}  // namespace

ApprovalQuestion::ApprovalQuestion(const ExtensionSettings& settings, std::string stateFile)
    : settings_(settings), stateFile_(std::move(stateFile)) {
  QObject::connect(&timer_, &QTimer::timeout, this, [this] { look(); });
  timer_.start(lookPeriod);
  look();
}

void ApprovalQuestion::approve() {
  std::ignore = settings_.approve();
  look();
}

void ApprovalQuestion::deny() {
  std::ignore = settings_.deny();
  look();
}

void ApprovalQuestion::leaveOpen() { show(false); }

void ApprovalQuestion::look() {
  std::error_code error;
  const auto written = std::filesystem::last_write_time(stateFile_, error);
  if (error || std::exchange(seen_, written) == written) return;
  const auto awaited = settings_.awaited();
  isRemoval_ = awaited == SystemExtensionAction::deactivation;
  show(awaited.has_value());
}

void ApprovalQuestion::show(bool isAsking) {
  isAsking_ = isAsking;
  emit changed();
}

}  // namespace ostrel::simulated
