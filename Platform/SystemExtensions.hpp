#pragma once

#include <memory>
#include <string>

#include "Platform/PlatformError.hpp"

namespace ostrel {

enum class SystemExtensionAction { activation, deactivation };

/// How a request went well; the numbers are the platform's.
enum class SystemExtensionResult { completed = 0, completesAfterReboot = 1 };

/// What to do when another version of the extension is installed.
enum class SystemExtensionReplacement { cancel, replace };

/// Told how a request goes on (OSSystemExtensionRequestDelegate). Main thread, never inside `submit`.
class SystemExtensionDelegate {
 public:
  virtual ~SystemExtensionDelegate() = default;

  virtual SystemExtensionReplacement replacementOfInstalled() = 0;

  /// The person has to approve; the request goes on by itself once that has happened.
  virtual void needsUserApproval() = 0;

  virtual void finished(SystemExtensionResult result) = 0;
  virtual void failed(const PlatformError& error) = 0;
};

/// Installs and removes the system extension of the bundle (OSSystemExtensionManager). Main thread.
class SystemExtensions {
 public:
  virtual ~SystemExtensions() = default;

  /// Hands the request to the system. The delegate hears nothing more once it is gone.
  virtual void submit(SystemExtensionAction action, const std::string& identifier,
                      std::weak_ptr<SystemExtensionDelegate> delegate) = 0;
};

}  // namespace ostrel
