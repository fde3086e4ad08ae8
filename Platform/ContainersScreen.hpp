#pragma once

#include <functional>
#include <string>

namespace ostrel {

enum class ContainersCopy;
enum class ContainerSnippet;
struct ContainersPageContent;

/// What the user does on the containers page.
struct ContainersScreenEvents {
  std::function<void()> opened;  ///< asks for a new reading, which `show` then gets
  std::function<void(const std::string& runtime)> selected;
  std::function<void(ContainerSnippet)> snippetChosen;
  std::function<bool(ContainersCopy)> copyPressed;  ///< false when there is nothing to copy
  std::function<bool(const std::string& runtime, bool isOn)>
      notifySwitched;  ///< false when it was not stored
};

/// The containers page. Main thread.
class ContainersScreen {
 public:
  virtual ~ContainersScreen() = default;

  /// Sets the receiver of what the user does.
  virtual void onEvents(ContainersScreenEvents events) = 0;

  /// Shows the content once the user has opened the page; unchanged parts are not drawn again.
  virtual void show(const ContainersPageContent& content) = 0;
};

}  // namespace ostrel
