#include "Platform/SimulatedMac/SimulatedSystemExtensions.hpp"

#include <chrono>
#include <optional>
#include <utility>

#include "Platform/Posix/FileLock.hpp"
#include "Platform/SimulatedMac/HostRoot.hpp"

namespace ostrel {

namespace {

constexpr const char* bundledExtension = "tech.brenn.ostrel-agent.sysext";
constexpr std::chrono::milliseconds timeBetweenLooks(100);

/// Codes of OSSystemExtensionErrorCode in <SystemExtensions/SystemExtensions.h>.
enum class ErrorCode {
  unknown = 1,
  extensionNotFound = 4,
  requestCanceled = 11,
  requestSuperseded = 12,
  authorizationRequired = 13,
};

/// True when a request was carried out between two polls; denying one changes only `awaiting`.
bool isChanged(const SystemExtensionState& before, const SystemExtensionState& now) {
  return before.installedVersion != now.installedVersion || before.enabled != now.enabled;
}

PlatformError error(ErrorCode code, std::string description) {
  return {"OSSystemExtensionErrorDomain", static_cast<int>(code), std::move(description)};
}

}  // namespace

SimulatedSystemExtensions::SimulatedSystemExtensions(Files& files, MainQueue& mainQueue,
                                                     const std::string& lockPath)
    : files_(files), mainQueue_(mainQueue), lockPath_(lockPath), overrides_(files, lockPath) {}

void SimulatedSystemExtensions::submit(SystemExtensionAction action, const std::string& identifier,
                                       std::weak_ptr<SystemExtensionDelegate> delegate) {
  mainQueue_.post([this, request = Request{action, std::move(delegate)},
                   isBundled = identifier == bundledExtension] {
    if (isBundled) return begin(request);
    fail(request, error(ErrorCode::extensionNotFound, "The extension is not in the application's bundle."));
  });
}

void SimulatedSystemExtensions::begin(const Request& request) {
  if (const auto ordered = overrides_.takeFailure(FaultyCall::request)) return fail(request, *ordered);
  if (isReplacementCancelled(request)) {
    return fail(request, error(ErrorCode::requestCanceled, "The request was canceled."));
  }
  take(request);
}

bool SimulatedSystemExtensions::isReplacementCancelled(const Request& request) const {
  const auto state = read();
  const bool replaces = request.action == SystemExtensionAction::activation &&
                        !state.installedVersion.empty() && state.installedVersion != state.bundledVersion;
  const auto delegate = request.delegate.lock();
  return replaces && delegate && delegate->replacementOfInstalled() == SystemExtensionReplacement::cancel;
}

void SimulatedSystemExtensions::take(Request request) {
  std::optional lock = FileLock::take(lockPath_);
  if (!*lock) return fail(request, error(ErrorCode::unknown, lock->error().description));
  auto state = read();
  request.before = state;
  const auto step = requestStep(state, request.action, overrides_.approvalRule());
  if (step == RequestStep::carryOut) state = after(request.action, state);
  if (step == RequestStep::awaitApproval) state.awaiting = request.action;
  const bool isWritten = step == RequestStep::nothingInstalled || write(state);
  lock.reset();
  if (!isWritten) return fail(request, error(ErrorCode::unknown, "The extension's state cannot be written."));
  switch (step) {
    case RequestStep::nothingInstalled:
      return fail(request, error(ErrorCode::extensionNotFound, "The extension is not installed."));
    case RequestStep::carryOut:
      return finish(request);
    case RequestStep::awaitApproval:
      return wait(request);
  }
}

void SimulatedSystemExtensions::wait(const Request& request) {
  const auto place = waiting_.insert(waiting_.end(), request);
  place->look = mainQueue_.every(timeBetweenLooks, [this, place] {
    // The rest of this call may need the closure that the erased entry keeps alive.
    const auto look = place->look;
    if (isDecided(*place)) waiting_.erase(place);
  });
  callDelegate(request, [](SystemExtensionDelegate& delegate) { delegate.needsUserApproval(); });
}

bool SimulatedSystemExtensions::isDecided(const Request& request) {
  if (request.delegate.expired()) return true;
  const auto state = read();
  if (state.awaiting == request.action) return false;
  if (hasReached(state, request.action)) {
    finish(request);
  } else if (state.awaiting || isChanged(request.before, state)) {
    fail(request, error(ErrorCode::requestSuperseded, "Another request took this one's place."));
  } else {
    // The system's error when the user denies the authorization of a request.
    fail(request, error(ErrorCode::authorizationRequired, "The request was not authorized."));
  }
  return true;
}

SystemExtensionState SimulatedSystemExtensions::read() const {
  const auto bytes = files_.read(simulatedstate::systemExtension);
  if (!bytes) return {};
  return systemExtensionOfFile(*bytes).value_or(SystemExtensionState());
}

bool SimulatedSystemExtensions::write(const SystemExtensionState& state) {
  const std::string path = simulatedstate::systemExtension;
  return files_.makeFolders(path.substr(0, path.rfind('/'))).has_value() &&
         files_.writeAtomically(path, fileOfSystemExtension(state)).has_value();
}

void SimulatedSystemExtensions::finish(const Request& request) {
  const auto result = overrides_.completesAfterReboot() ? SystemExtensionResult::completesAfterReboot
                                                        : SystemExtensionResult::completed;
  callDelegate(request, [result](SystemExtensionDelegate& delegate) { delegate.finished(result); });
}

void SimulatedSystemExtensions::fail(const Request& request, const PlatformError& error) {
  callDelegate(request, [error](SystemExtensionDelegate& delegate) { delegate.failed(error); });
}

void SimulatedSystemExtensions::callDelegate(const Request& request,
                                             const std::function<void(SystemExtensionDelegate&)>& call) {
  const auto work = [delegate = request.delegate, call] {
    if (const auto listener = delegate.lock()) call(*listener);
  };
  mainQueue_.post(work);
  if (overrides_.repeatsCallbacks()) mainQueue_.post(work);
}

}  // namespace ostrel
