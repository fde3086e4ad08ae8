#pragma once

#include <memory>
#include <string>

#include "Platform/PlatformError.hpp"

namespace ostrel {

enum class SystemExtensionAction { activation, deactivation };

/// How a request succeeded; the numbers are the platform's.
enum class SystemExtensionResult { completed = 0, completesAfterReboot = 1 };

/// What to do when another version of the extension is installed.
enum class SystemExtensionReplacement { cancel, replace };

/// Receives the progress of a request (OSSystemExtensionRequestDelegate). Main thread, never inside `submit`.
class SystemExtensionDelegate {
 public:
  virtual ~SystemExtensionDelegate() = default;

  virtual SystemExtensionReplacement replacementOfInstalled() = 0;

  /// The user has to approve; the request then continues on its own.
  virtual void needsUserApproval() = 0;

  virtual void finished(SystemExtensionResult result) = 0;
  virtual void failed(const PlatformError& error) = 0;
};

/// Installs and removes the system extension of the bundle (OSSystemExtensionManager). Main thread.
class SystemExtensions {
 public:
  virtual ~SystemExtensions() = default;

  /// Submits the request to the system. A destroyed delegate is not called.
  virtual void submit(SystemExtensionAction action, const std::string& identifier,
                      std::weak_ptr<SystemExtensionDelegate> delegate) = 0;
};

}  // namespace ostrel
