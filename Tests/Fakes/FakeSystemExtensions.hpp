#pragma once

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "Platform/SystemExtensions.hpp"

namespace ostrel {

/// A system that keeps the requests; the test gives their answers.
class FakeSystemExtensions final : public SystemExtensions {
 public:
  struct Request {
    SystemExtensionAction action;
    std::string identifier;
    std::weak_ptr<SystemExtensionDelegate> delegate;
  };

  void submit(SystemExtensionAction action, const std::string& identifier,
              std::weak_ptr<SystemExtensionDelegate> delegate) override {
    requests.push_back({action, identifier, std::move(delegate)});
  }

  /// The delegate of the latest request; ends the test when there is none.
  std::shared_ptr<SystemExtensionDelegate> delegate() const {
    auto delegate = requests.empty() ? nullptr : requests.back().delegate.lock();
    if (!delegate) throw std::logic_error("no request, or its delegate is destroyed");
    return delegate;
  }

  std::vector<Request> requests;
};

}  // namespace ostrel
