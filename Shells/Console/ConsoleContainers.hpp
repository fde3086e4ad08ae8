#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "OstrelAgent/Containers/ContainersPage.hpp"
#include "Platform/ContainersScreen.hpp"
#include "Platform/StandardStreams.hpp"

namespace ostrel {

/// The containers page as text on standard output: the list or a runtime's detail, printed when it was asked
/// for and has been read, and whenever it changes from then on; the list's first print has the rest of the
/// page below.
class ConsoleContainers final : public ContainersScreen {
 public:
  explicit ConsoleContainers(StandardStreams& streams) : streams_(streams) {}

  void onEvents(ContainersScreenEvents events) override { events_ = std::move(events); }
  void show(const ContainersPageContent& content) override;

  /// False when no role shows the page.
  bool isAvailable() const { return events_.opened != nullptr; }

  /// Asks for the list, or for the detail of the runtime of that name when it is not empty.
  void open(std::string_view runtime);

  /// Copies what a word of `consolecommand::Copy` names.
  void copy(std::string_view word);

  void switchNotification(std::string_view runtime, bool isOn);

 private:
  /// The table's name of a runtime in any case; prints a sentence and returns nullopt when there is none.
  std::optional<std::string> runtimeNamed(std::string_view name);

  /// While it lives, a changed page is not printed: the command prints what it did.
  class Quiet {
   public:
    explicit Quiet(bool& flag) : flag_(flag) { flag_ = true; }
    Quiet(const Quiet&) = delete;
    Quiet& operator=(const Quiet&) = delete;
    ~Quiet() { flag_ = false; }

   private:
    bool& flag_;
  };

  StandardStreams& streams_;
  ContainersScreenEvents events_;
  bool showsDetail_ = false;
  bool isQuiet_ = false;
  bool isInsideDue_ = false;  ///< the next list is followed by what is done inside containers
  std::string printed_;       ///< the last text, empty when the next one must be printed
  std::optional<ContainersPageContent> shown_;
};

}  // namespace ostrel
