#include "SimulatedEndpoint/ControlOverrides.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <string_view>

#include "Platform/SimulatedMac/SimulatedOverrides.hpp"
#include "SimulatedEndpoint/FaultMode.hpp"

namespace ostrel::simulated {

namespace {

/// An order that is one of a few words; the first is how the system behaves without an order.
struct Choice {
  std::string_view name;
  std::array<std::string_view, 4> words;
};

constexpr std::array choices = {
    Choice{"approval", {"new", "always", "never"}},
    Choice{"result", {"completed", "after-reboot"}},
    Choice{"callbacks", {"once", "twice"}},
    Choice{"trust", {"accept", "cancel", "refuse"}},
    Choice{"notifications", {"real", "authorized", "denied", "undetermined"}},
};

std::string listed(const Choice& choice) {
  std::string list;
  for (const auto& word : choice.words) {
    if (word.empty()) continue;
    if (!list.empty()) list += ", ";
    list += word;
  }
  return list;
}

ControlResult give(const Overrides& overrides, const std::string& name, const Json& order,
                   const std::string& text) {
  const auto given = overrides.give(name, order);
  return given ? ControlResult{0, text + "\n"} : failed(given.error());
}

ControlResult choose(const Choice& choice, std::span<const std::string> words, const Overrides& overrides) {
  const std::string name(choice.name);
  if (words.size() != 1 || words[0].empty() || std::ranges::count(choice.words, words[0]) == 0) {
    return usageFault(name + " takes one of: " + listed(choice));
  }
  const auto order = words[0] == choice.words[0] ? Json() : Json(words[0]);
  return give(overrides, name, order, name + " is now " + words[0]);
}

std::optional<int> numberOf(const std::string& word) {
  int number = 0;
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
  const bool isWhole = error == std::errc() && end == word.data() + word.size();
  return isWhole ? std::optional(number) : std::nullopt;
}

ControlResult failCalls(const std::string& name, std::span<const std::string> words,
                        const Overrides& overrides) {
  const int count = words.empty() ? -1 : numberOf(words[0]).value_or(-1);
  if (words.size() == 1 && count == 0) return give(overrides, name, Json(), name + " is taken back");
  const auto code = words.size() < 3 ? std::nullopt : numberOf(words[2]);
  if (words.size() > 4 || count <= 0 || !code) {
    return usageFault(name + " takes how often, a domain, a code and perhaps a text, as in `" + name +
                      " 11 NEVPNErrorDomain 4`; or 0");
  }
  Json order = {{"count", count}, {"domain", words[1]}, {"code", code.value_or(0)}};
  if (words.size() == 4) order["description"] = words[3];
  return give(overrides, name, order, name + ": " + words[0] + " times " + words[1] + " " + words[2]);
}

ControlResult misbehave(std::span<const std::string> words, const Overrides& overrides) {
  const auto order = misbehaviourOrder(words);
  if (!order) return usageFault(order.error());
  return give(overrides, "misbehave", *order, "misbehave is now " + words[0]);
}

ControlResult changeNetwork(std::span<const std::string> words, const Overrides& overrides) {
  const std::string state = words.empty() ? "" : words[0];
  const auto interfaces = words.subspan(std::min<std::size_t>(words.size(), 1));
  if (state == "down" && interfaces.empty()) {
    return give(overrides, "network", Json::array(), "The network is down");
  }
  if (state == "real" && interfaces.empty()) {
    return give(overrides, "network", Json(), "The network is the machine's own");
  }
  if (state != "up" || interfaces.empty() || std::ranges::count(interfaces, "") > 0) {
    return usageFault("network takes down, real, or up with names of interfaces, as in `network up en0`");
  }
  std::string names;
  for (const auto& name : interfaces) names += (names.empty() ? "" : ", ") + name;
  return give(overrides, "network", Json(std::vector(interfaces.begin(), interfaces.end())),
              "The network is up by " + names);
}

/// A time that was never ordered before, so that a running agent sees a new wake.
ControlResult wake(const Overrides& overrides) {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  return give(overrides, "wake", std::chrono::duration_cast<std::chrono::milliseconds>(now).count(),
              "The Mac has woken");
}

ControlResult clear(const Overrides& overrides) {
  const auto cleared = overrides.clear();
  return cleared ? ControlResult{0, "Nothing is ordered any more\n"} : failed(cleared.error());
}

}  // namespace

std::optional<ControlResult> runOverride(std::span<const std::string> arguments, const Overrides& overrides) {
  if (arguments.empty()) return std::nullopt;
  const auto& name = arguments.front();
  const auto words = arguments.subspan(1);
  const auto choice = std::ranges::find(choices, name, &Choice::name);
  if (choice != choices.end()) return choose(*choice, words, overrides);
  if (std::ranges::count(faultyCallNames, name, &FaultyCallName::name) > 0) {
    return failCalls(name, words, overrides);
  }
  if (name == "misbehave") return misbehave(words, overrides);
  if (name == "network") return changeNetwork(words, overrides);
  if (name == "wake" && words.empty()) return wake(overrides);
  if (name == "overrides" && words.empty()) return ControlResult{0, printJson(overrides.all())};
  if (name == "clear-overrides" && words.empty()) return clear(overrides);
  return std::nullopt;
}

}  // namespace ostrel::simulated
