#include "Hosts/DesktopPlugIns.hpp"

#include "Platform/Posix/PlugIn.hpp"

namespace ostrel {

namespace {

template <class PlugIn>
[[nodiscard]] std::expected<const PlugIn*, std::string> load(const Bundle& bundle, const std::string& name) {
  const auto symbol = "ostrel" + name + "PlugIn";
  const auto path = bundle.path() + "/Contents/PlugIns/" + name + ".so";
  const auto table = loadPlugIn(path, symbol.c_str(), OSTREL_BUILD);
  if (!table) return std::unexpected(table.error());
  return static_cast<const PlugIn*>(*table);
}

}  // namespace

std::expected<const ShellPlugIn*, std::string> loadShellPlugIn(const Bundle& bundle) {
  return load<ShellPlugIn>(bundle, "Shell");
}

DesktopServices desktopServices(const Bundle& bundle, Log& log) {
  return {.processDueWork = {},
          .receivedSignal = {},
          .realPath = [](std::string_view path) { return std::string(path); },
          .resources = bundle.path() + "/Contents/Resources",
          .loadViews = [&bundle] { return load<ViewsPlugIn>(bundle, "Views"); },
          .log = log};
}

}  // namespace ostrel
